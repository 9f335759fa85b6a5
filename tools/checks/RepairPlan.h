#pragma once

#include <QString>
#include <QVariantList>

#include <vector>

namespace moratools {

class Checked;

/// A statement that repairs something.
struct RepairStep {
    QString sql; ///< with a ? for each value
    QVariantList values = {};
};

/// A repair as it is told, and how it is done.
struct PlannedRepair {
    QString text;
    std::vector<RepairStep> steps;
};

/// @{ What there is to be repaired in a network, or in the store as a whole.
std::vector<PlannedRepair> repairsOfStore(const Checked &checked);
std::vector<PlannedRepair> repairsOfCounters(const Checked &checked);
std::vector<PlannedRepair> repairsOfOrphans(const Checked &checked);
std::vector<PlannedRepair> repairsOfShares(const Checked &checked);
std::vector<PlannedRepair> repairsOfLines(const Checked &checked);
/// @}

} // namespace moratools
