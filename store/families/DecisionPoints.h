#pragma once

#include "store/core/Store.h"

#include <QList>

class NetLoad;
class NetSave;
class DecisionPoint;

/// Decision points with their routes and flow intervals.
namespace decisionpoints {

bool insertDecisionPoint(const Store &store, DecisionPoint *point, bool useTransaction);
DecisionPoint *readDecisionPoint(const Store &store, long id);
bool listDecisionPointIds(const Store &store, QList<long> &ids);

void loadAllDecisionPoints(NetLoad &net);
void saveAllDecisionPoints(NetSave &net);

} // namespace decisionpoints
