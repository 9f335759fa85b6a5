#include "tools/checks/RuleGroups.h"

#include <algorithm>
#include <iterator>

namespace moratools {

const std::vector<Rule> &rules() {
    static const std::vector<Rule> all = [] {
        std::vector<Rule> joined;
        for (std::vector<Rule> group :
             {storeRules(), referenceRules(), jsonRules(), geometryRules(), connectorShapeRules(),
              topologyRules(), signalRules(), vehicleRules(), demandRules(), transitRules(), deviceRules()})
            std::move(group.begin(), group.end(), std::back_inserter(joined));
        return joined;
    }();
    return all;
}

const Rule *ruleCalled(const QString &id) {
    const auto found =
        std::find_if(rules().begin(), rules().end(), [&id](const Rule &rule) { return rule.id == id; });
    return found != rules().end() ? &*found : nullptr;
}

QString wordFor(Severity severity) {
    switch (severity) {
    case Severity::Note:
        return QStringLiteral("note");
    case Severity::Warning:
        return QStringLiteral("warning");
    default:
        return QStringLiteral("error");
    }
}

} // namespace moratools
