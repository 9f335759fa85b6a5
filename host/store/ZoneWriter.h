#pragma once

#include "model/AccidentZone.h"
#include "model/RoadWorkZone.h"

#include <QSqlDatabase>

/// Statements of the host's own, the only ones with which it writes objects: the library reads accident and
/// road-work zones and leaves their writing to other programs. The caller owns the transaction. Both throw
/// `Failure` when the store refuses a row; `netId` counts in stores of several networks.
namespace zonewriter {

void insert(QSqlDatabase &db, long netId, const AccidentZone &zone);
void insert(QSqlDatabase &db, long netId, const RoadWorkZone &zone);

} // namespace zonewriter
