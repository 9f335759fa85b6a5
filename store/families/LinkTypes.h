#pragma once

#include "model/LinkType.h"
#include "store/core/Store.h"

#include <QList>

class NetLoad;
class NetSave;

/// The catalogue of road classes.
namespace linktypes {

/// Appends all link types; true in every case.
bool readLinkTypes(const Store &store, QList<LinkType> &types);

void loadAllLinkTypes(NetLoad &net);
void saveAllLinkTypes(NetSave &net);

} // namespace linktypes
