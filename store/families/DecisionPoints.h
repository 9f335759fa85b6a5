#pragma once

#include "store/core/Store.h"

#include <QList>

class NetLoad;
class NetSave;
class DecisionPoint;

/// Decision points with their routes and flow intervals.
namespace decisionpoints {

bool insert(const Store &store, DecisionPoint *point, bool useTransaction);
DecisionPoint *read(const Store &store, long id);
bool listIds(const Store &store, QList<long> &ids);

void load(NetLoad &net);
void save(NetSave &net);

} // namespace decisionpoints
