#include "tools/checks/Admission.h"
#include "tools/checks/Lines.h"
#include "tools/checks/LinkGraph.h"
#include "tools/checks/ObjectRules.h"
#include "tools/checks/RoadLines.h"
#include "tools/checks/RuleGroups.h"

#include <QHash>
#include <QPair>
#include <QSet>

#include <algorithm>
#include <cmath>

namespace moratools {

namespace {

// Shares are kept with two digits by many stores: each is off by half a hundredth at most.
constexpr double kRounding = 0.005;
// A point is set beside its road by hand, or at its edge.
constexpr double kBesideLink = 10.0; // metres

QString calledRoute(const Routing &route, const DecisionPoint &point) {
    return QStringLiteral("%1 of %2")
        .arg(called(QStringLiteral("route"), route.routingID, route.routingName), calledObject(point));
}

/// Calls `use` with each route and the point that it begins at.
template <class Use>
void forEachRoute(const Checked &checked, const Use &use) {
    for (const auto &point : checked.network().traffic.decisionPoints) {
        for (const Routing *route : point->mlRouting)
            use(*route, *point);
    }
}

void findRoute(Reporter &reporter, const Routing &route, const DecisionPoint &point, const QString &what,
               const Link &link) {
    reporter.find(Finding{0, QStringLiteral("Routing"), route.routingID,
                          calledRoute(route, point) + QLatin1Char(' ') + what, placeOf(link)});
}

void findRoute(Reporter &reporter, const Routing &route, const DecisionPoint &point, const QString &what) {
    reporter.find("Routing", route.routingID, calledRoute(route, point) + QLatin1Char(' ') + what);
}

/// The codes of the vehicle types that depart from a point.
std::vector<long> typesDeparting(const DeparturePoint &point) {
    std::vector<long> codes;
    for (const DepartureInterval &interval : point.mlInterval) {
        if (interval.vehiCount <= 0)
            continue;
        for (const VehicleConsDetail &detail : interval.vehiCons.mlDetail) {
            if (detail.proportion > 0)
                codes.push_back(detail.vehicleTypeCode);
        }
    }
    std::sort(codes.begin(), codes.end());
    codes.erase(std::unique(codes.begin(), codes.end()), codes.end());
    return codes;
}

void checkDepartureRoad(const Checked &checked, Reporter &reporter) {
    const Admission &admission = checked.made<Admission>();
    const LinkGraph &graph = checked.made<LinkGraph>();
    for (const auto &point : checked.network().traffic.departurePoints) {
        const Link *link = graph.link(point->linkID);
        if (!link)
            continue;
        for (const long code : typesDeparting(*point)) {
            const VehicleType *type = admission.type(code);
            if (type && admission.isClosed(*link, *type))
                findObject(reporter, *point,
                           QStringLiteral("lets %1 depart on %2, all lanes of which are closed to it")
                               .arg(calledObject(*type), calledObject(*link)),
                           placeOf(*link));
        }
    }
}

void checkDepartureCounts(const Checked &checked, Reporter &reporter) {
    for (const auto &point : checked.network().traffic.departurePoints) {
        for (const DepartureInterval &interval : point->mlInterval) {
            if (interval.vehiCount < 0 || interval.interval <= 0)
                findObject(reporter, *point,
                           QStringLiteral("has an interval %1 with a time of %2 and %3 vehicles")
                               .arg(QString::number(interval.departureIntervalD),
                                    QString::number(interval.interval), QString::number(interval.vehiCount)));
        }
    }
}

void checkDepartureComposition(const Checked &checked, Reporter &reporter) {
    for (const auto &point : checked.network().traffic.departurePoints) {
        for (const DepartureInterval &interval : point->mlInterval) {
            if (interval.vehiCount > 0 && interval.vehiCons.mlDetail.isEmpty())
                findObject(
                    reporter, *point,
                    QStringLiteral(
                        "lets %1 vehicles depart in interval %2 without a composition to draw them from")
                        .arg(QString::number(interval.vehiCount),
                             QString::number(interval.departureIntervalD)));
        }
    }
}

void checkDepartures(const Checked &checked, Reporter &reporter) {
    for (const auto &point : checked.network().traffic.departurePoints) {
        if (std::none_of(point->mlInterval.begin(), point->mlInterval.end(),
                         [](const DepartureInterval &interval) { return interval.vehiCount > 0; }))
            findObject(reporter, *point, QStringLiteral("lets no vehicle depart"));
    }
}

void checkDecisionPlace(const Checked &checked, Reporter &reporter) {
    const RoadLines &roads = checked.made<RoadLines>();
    for (const auto &point : checked.network().traffic.decisionPoints) {
        const auto nearest = lines::nearest(roads.of(point->mpLink), point->x, point->y);
        if (nearest && !(nearest->away <= point->mpLink->width() / 2 + kBesideLink))
            findObject(reporter, *point,
                       QStringLiteral("stands %1 m from its %2")
                           .arg(shown(nearest->away), calledObject(*point->mpLink)),
                       placeOf(*point->mpLink));
    }
}

void checkDecisionRoutes(const Checked &checked, Reporter &reporter) {
    for (const auto &point : checked.network().traffic.decisionPoints) {
        if (point->mlRouting.isEmpty())
            findObject(reporter, *point, QStringLiteral("has no routes"));
    }
}

void checkRouteLinks(const Checked &checked, Reporter &reporter) {
    forEachRoute(checked, [&](const Routing &route, const DecisionPoint &point) {
        if (route.mlLinkChain.isEmpty())
            findRoute(reporter, route, point, QStringLiteral("has no links"));
    });
}

void checkRouteStart(const Checked &checked, Reporter &reporter) {
    forEachRoute(checked, [&](const Routing &route, const DecisionPoint &point) {
        if (route.mlLinkChain.isEmpty() || route.mlLinkChain.first().first() == point.mpLink)
            return;
        const Link &first = *route.mlLinkChain.first().first();
        findRoute(reporter, route, point,
                  QStringLiteral("begins on %1, and its point stands on %2")
                      .arg(calledObject(first), calledObject(*point.mpLink)),
                  first);
    });
}

void checkRouteChains(const Checked &checked, Reporter &reporter) {
    const LinkGraph &graph = checked.made<LinkGraph>();
    forEachRoute(checked, [&](const Routing &route, const DecisionPoint &point) {
        for (const QList<Link *> &chain : route.mlLinkChain) {
            for (int i = 0; i + 1 < chain.size(); ++i) {
                if (!graph.isJoined(chain[i], chain[i + 1]))
                    findRoute(reporter, route, point,
                              QStringLiteral("goes from %1 to %2, and no connector joins them")
                                  .arg(calledObject(*chain[i]), calledObject(*chain[i + 1])),
                              *chain[i]);
            }
        }
    });
}

void checkRouteAdmission(const Checked &checked, Reporter &reporter) {
    const Admission &admission = checked.made<Admission>();
    QHash<long, std::vector<const VehicleType *>> departing; // by link
    for (const auto &point : checked.network().traffic.departurePoints) {
        for (const long code : typesDeparting(*point)) {
            if (const VehicleType *type = admission.type(code))
                departing[point->linkID].push_back(type);
        }
    }
    forEachRoute(checked, [&](const Routing &route, const DecisionPoint &point) {
        const auto types = departing.constFind(point.mpLink->linkID);
        if (types == departing.constEnd())
            return;
        for (const QList<Link *> &chain : route.mlLinkChain) {
            for (const Link *link : chain) {
                if (!std::all_of(types->begin(), types->end(),
                                 [&](const VehicleType *type) { return admission.isClosed(*link, *type); }))
                    continue;
                findRoute(reporter, route, point,
                          QStringLiteral("goes over %1, which is closed to all vehicles that depart there")
                              .arg(calledObject(*link)),
                          *link);
                return;
            }
        }
    });
}

void checkRouteShares(const Checked &checked, Reporter &reporter) {
    forEachRoute(checked, [&](const Routing &route, const DecisionPoint &point) {
        if (!isAmount(route.proportion))
            findRoute(reporter, route, point,
                      QStringLiteral("has a share of %1").arg(shown(route.proportion)));
    });
}

/// Whether shares add up to 1, to 100 percent, or are all 0.
bool areShares(double sum, int count) {
    const double allowed = kRounding * count * (1 + 1e-9) + 1e-9;
    return !std::isfinite(sum) || std::abs(sum) <= allowed || std::abs(sum - 1) <= allowed ||
           std::abs(sum - 100) <= allowed;
}

void checkShares(const Checked &checked, Reporter &reporter) {
    for (const auto &point : checked.network().traffic.decisionPoints) {
        double sum = 0;
        for (const Routing *route : point->mlRouting)
            sum += route->proportion;
        if (!areShares(sum, point->mlRouting.size()))
            findObject(reporter, *point,
                       QStringLiteral("has routes whose shares add up to %1, neither 1 nor 100 percent")
                           .arg(shown(sum)));
    }
}

void checkFlowShares(const Checked &checked, Reporter &reporter) {
    for (const auto &point : checked.network().traffic.decisionPoints) {
        for (const RoutingFlowByInterval *interval : point->mlFlowByInterval) {
            double sum = 0;
            for (const RoutingFLowRatio *ratio : interval->mlFlowRatio)
                sum += ratio->ratio;
            if (!areShares(sum, interval->mlFlowRatio.size()))
                findObject(reporter, *point,
                           QStringLiteral("has ratios until %1 that add up to %2, neither 1 nor 100 percent")
                               .arg(QString::number(interval->endDateTime), shown(sum)));
        }
    }
}

/// Calls `use` with each flow ratio and its point.
template <class Use>
void forEachRatio(const Checked &checked, const Use &use) {
    for (const auto &point : checked.network().traffic.decisionPoints) {
        for (const RoutingFlowByInterval *interval : point->mlFlowByInterval) {
            for (const RoutingFLowRatio *ratio : interval->mlFlowRatio)
                use(*ratio, *point);
        }
    }
}

void findRatio(Reporter &reporter, const RoutingFLowRatio &ratio, const DecisionPoint &point,
               const QString &what) {
    reporter.find("RoutingFLowRatio", ratio.routingFLowRatioID,
                  QStringLiteral("%1 for route %2 of %3 %4")
                      .arg(called(QStringLiteral("flow ratio"), ratio.routingFLowRatioID),
                           QString::number(ratio.routingID), calledObject(point), what));
}

void checkRatioValues(const Checked &checked, Reporter &reporter) {
    forEachRatio(checked, [&](const RoutingFLowRatio &ratio, const DecisionPoint &point) {
        if (!isAmount(ratio.ratio))
            findRatio(reporter, ratio, point, QStringLiteral("is %1").arg(shown(ratio.ratio)));
    });
}

void checkRatioTimes(const Checked &checked, Reporter &reporter) {
    forEachRatio(checked, [&](const RoutingFLowRatio &ratio, const DecisionPoint &point) {
        if (ratio.endDateTime < ratio.startDateTime)
            findRatio(reporter, ratio, point,
                      QStringLiteral("ends at %1, before it begins at %2")
                          .arg(QString::number(ratio.endDateTime), QString::number(ratio.startDateTime)));
    });
}

void checkRatioOverlap(const Checked &checked, Reporter &reporter) {
    for (const auto &point : checked.network().traffic.decisionPoints) {
        QHash<long, long> ends; // of the ratio before, by route; intervals come in ascending order
        for (const RoutingFlowByInterval *interval : point->mlFlowByInterval) {
            for (const RoutingFLowRatio *ratio : interval->mlFlowRatio) {
                const auto before = ends.constFind(ratio->routingID);
                if (before != ends.constEnd() && ratio->startDateTime <= *before)
                    findRatio(reporter, *ratio, *point,
                              QStringLiteral("begins at %1, before the one before it ends at %2")
                                  .arg(QString::number(ratio->startDateTime), QString::number(*before)));
                ends.insert(ratio->routingID, ratio->endDateTime);
            }
        }
    }
}

using LanePairs = QSet<QPair<long, long>>;

LanePairs pairsOf(const Connector &connector) {
    LanePairs pairs;
    for (const LaneConnector *path : connector.mlLaneConnector)
        pairs.insert({path->mpStartLane->laneID, path->mpEndLane->laneID});
    return pairs;
}

void checkRouteLanes(const Checked &checked, Reporter &reporter) {
    const LinkGraph &graph = checked.made<LinkGraph>();
    QHash<long, LanePairs> joined; // by connector
    for (const RouteLanes &pair : checked.network().traffic.routeLanes) {
        const Connector *connector = graph.connector(pair.connID);
        if (!connector)
            continue;
        if (!joined.contains(pair.connID))
            joined.insert(pair.connID, pairsOf(*connector));
        if (!joined[pair.connID].contains(qMakePair(pair.lanes.laneID1, pair.lanes.laneID2)))
            reporter.find("RoutingLaneConnector", pair.routingID,
                          QStringLiteral("route %1 uses lanes %2 and %3 on %4, which does not join them")
                              .arg(QString::number(pair.routingID), QString::number(pair.lanes.laneID1),
                                   QString::number(pair.lanes.laneID2), calledObject(*connector)));
    }
}

} // namespace

std::vector<Rule> demandRules() {
    return {
        {"departure-point.closed-road", "demand", Severity::Warning, Scope::Objects,
         "Vehicles depart on a link all lanes of which are closed to their type.",
         "Let them depart elsewhere, or open a lane: its kind and its restrictions say who may use it.",
         checkDepartureRoad},
        {"departure-point.interval-impossible", "demand", Severity::Error, Scope::Objects,
         "An interval of departures has a time that is not above 0, or less than no vehicles.",
         "Set the interval.", checkDepartureCounts},
        {"departure-point.without-composition", "demand", Severity::Error, Scope::Objects,
         "Vehicles depart that no composition says the types of.",
         "Give the interval a composition with types.", checkDepartureComposition},
        {"departure-point.without-vehicles", "demand", Severity::Note, Scope::Objects,
         "No vehicle departs at a departure point.", "Remove it, unless it waits for its demand.",
         checkDepartures},
        {"decision-point.off-link", "demand", Severity::Warning, Scope::Objects,
         "A decision point stands more than 10 m beside its link.",
         "Move it to its link, or give it the link that it stands on.", checkDecisionPlace},
        {"decision-point.without-routes", "demand", Severity::Note, Scope::Objects,
         "A decision point has no routes.", "Remove it, unless it waits for its routes.",
         checkDecisionRoutes},
        {"decision-point.shares-off", "demand", Severity::Warning, Scope::Objects,
         "The shares of a point's routes add up to neither 1 nor 100 percent.", "Set the shares.",
         checkShares},
        {"decision-point.ratios-off", "demand", Severity::Warning, Scope::Objects,
         "The flow ratios of a time add up to neither 1 nor 100 percent.", "Set the ratios.",
         checkFlowShares},
        {"route.without-links", "demand", Severity::Error, Scope::Objects, "A route has no links.",
         "Give it its links, or remove it.", checkRouteLinks},
        {"route.starts-elsewhere", "demand", Severity::Warning, Scope::Objects,
         "A route does not begin on the link that its decision point stands on.",
         "Begin it there, or move it to the point of its first link.", checkRouteStart},
        {"route.broken", "demand", Severity::Error, Scope::Objects,
         "A route goes from a link to one that no connector joins to it.",
         "Add the connector, or the links between.", checkRouteChains},
        {"route.closed-road", "demand", Severity::Warning, Scope::Objects,
         "A route goes over a link that is closed to every type of vehicles that depart at its point's link.",
         "Take another way, or open a lane.", checkRouteAdmission},
        {"route.share-negative", "demand", Severity::Error, Scope::Objects,
         "The share of a route is below 0 or no finite number.", "Set the share.", checkRouteShares},
        {"route.lanes-not-joined", "demand", Severity::Warning, Scope::Objects,
         "A route names a pair of lanes on a connector that does not join these lanes.",
         "Name a pair that the connector joins, or add the lane connector.", checkRouteLanes},
        {"flow-ratio.negative", "demand", Severity::Error, Scope::Objects,
         "A flow ratio is below 0 or no finite number.", "Set the ratio.", checkRatioValues},
        {"flow-ratio.ends-before-begin", "demand", Severity::Error, Scope::Objects,
         "A flow ratio ends before it begins.", "Set its times.", checkRatioTimes},
        {"flow-ratio.overlaps", "demand", Severity::Error, Scope::Objects,
         "A flow ratio begins before the one before it of the same route has ended.", "Set its times.",
         checkRatioOverlap},
    };
}

} // namespace moratools
