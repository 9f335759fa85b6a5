#pragma once

#include "store/core/Store.h"

#include <QList>

class DecisionPoint;

/// Decision points with their routes and flow intervals.
namespace decisionpoints {

bool insert(const Store &store, DecisionPoint *point, bool useTransaction);
DecisionPoint *read(const Store &store, long id);
bool listIds(const Store &store, QList<long> &ids);

} // namespace decisionpoints
