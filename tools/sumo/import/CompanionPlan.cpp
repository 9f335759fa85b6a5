#include "tools/sumo/import/CompanionPlan.h"

#include "tools/sumo/import/References.h"
#include "tools/sumo/routing/TripRouter.h"

namespace moratools {

CompanionPlan planCompanions(const SumoNet &net, SumoCompanions companions, const SumoScenario &scenario,
                             Trips trips, const Progress &routing) {
    CompanionPlan plan;
    plan.scenario = scenario;
    for (const QString &file : scenario.furtherFiles)
        plan.leftOut.add(QStringLiteral("files of the configuration"), file);
    const auto records = std::make_shared<SumoCompanions>(std::move(companions));
    plan.companions = records;
    for (const SumoRepeated &connection : net.repeatedConnections)
        plan.leftOut.add(QStringLiteral("connections"), connection.what, connection.source,
                         QStringLiteral("it occurs a second time"));
    removeUnresolved(*records, net, plan.leftOut);
    if (trips == Trips::Routed)
        removeUnserved(*records, routeTrips(net, *records, routing), plan.leftOut);
    plan.obstacles = takeObstacles(*records, net);
    plan.lines = planLines(*records, plan.leftOut);
    plan.signalPlan = planSignals(net, *records, plan.leftOut);
    plan.demand = planDemand(*records, plan.leftOut);
    return plan;
}

} // namespace moratools
