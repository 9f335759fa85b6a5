#include "tools/checks/LinkGraph.h"
#include "tools/checks/ObjectRules.h"
#include "tools/checks/RuleGroups.h"

#include <QSet>

#include <algorithm>
#include <cmath>

namespace moratools {

namespace {

void checkLanesOfLinks(const Checked &checked, Reporter &reporter) {
    for (const auto &connector : checked.network().connectors) {
        for (const LaneConnector *path : connector->mlLaneConnector) {
            const auto find = [&](const Lane &lane, const Link &link, const char *how) {
                if (lane.linkID != link.linkID)
                    findObject(reporter, *connector,
                               QStringLiteral("%1 lane %2, which is one of link %3 and not of its %4")
                                   .arg(QLatin1String(how), QString::number(lane.laneID),
                                        QString::number(lane.linkID), calledObject(link)));
            };
            find(*path->mpStartLane, *connector->mpStartLink, "leaves");
            find(*path->mpEndLane, *connector->mpEndLink, "enters");
        }
    }
}

void checkConnectorPaths(const Checked &checked, Reporter &reporter) {
    for (const auto &connector : checked.network().connectors) {
        if (connector->mlLaneConnector.isEmpty())
            findObject(reporter, *connector, QStringLiteral("joins links and none of their lanes"));
    }
}

void checkConnectorTwice(const Checked &checked, Reporter &reporter) {
    QHash<QPair<const Link *, const Link *>, const Connector *> known;
    for (const auto &connector : checked.network().connectors) {
        const Connector *&first = known[{connector->mpStartLink, connector->mpEndLink}];
        if (!first)
            first = connector.get();
        else
            findObject(reporter, *connector,
                       QStringLiteral("joins the same links as %1").arg(calledObject(*first)));
    }
}

void checkPathTwice(const Checked &checked, Reporter &reporter) {
    for (const auto &connector : checked.network().connectors) {
        QSet<QPair<const Lane *, const Lane *>> known;
        for (const LaneConnector *path : connector->mlLaneConnector) {
            const QPair<const Lane *, const Lane *> lanes(path->mpStartLane, path->mpEndLane);
            if (known.contains(lanes))
                findObject(
                    reporter, *connector,
                    QStringLiteral("joins lane %1 to lane %2 twice")
                        .arg(QString::number(lanes.first->laneID), QString::number(lanes.second->laneID)));
            known.insert(lanes);
        }
    }
}

/// Finds the links for which a question about what leads to and from them is answered with yes.
template <class Question>
void checkLinks(const Checked &checked, Reporter &reporter, const QString &what, const Question &question) {
    const LinkGraph &graph = checked.made<LinkGraph>();
    const auto &links = checked.network().links;
    for (std::size_t i = 0; i < links.size(); ++i) {
        if (question(graph, int(i)))
            findObject(reporter, *links[i], what, placeOf(*links[i]));
    }
}

void checkIsolated(const Checked &checked, Reporter &reporter) {
    checkLinks(
        checked, reporter, QStringLiteral("has no connector at either end"),
        [](const LinkGraph &graph, int link) { return !graph.isEntered(link) && !graph.isLeft(link); });
}

void checkDeadEnd(const Checked &checked, Reporter &reporter) {
    checkLinks(checked, reporter, QStringLiteral("is entered, and nothing leads on from it"),
               [](const LinkGraph &graph, int link) { return graph.isEntered(link) && !graph.isLeft(link); });
}

void checkReached(const Checked &checked, Reporter &reporter) {
    const LinkGraph &graph = checked.made<LinkGraph>();
    std::vector<int> sources;
    const auto add = [&](const Link *link) {
        if (graph.placeOf(link) >= 0)
            sources.push_back(graph.placeOf(link));
    };
    for (const auto &point : checked.network().traffic.departurePoints)
        add(graph.link(point->linkID));
    for (const auto &line : checked.network().traffic.busLines)
        add(line->mlLink.value(0));
    if (sources.empty())
        return; // a network without traffic is no question
    const std::vector<char> reached = graph.reachedFrom(sources, LinkGraph::Direction::Forwards);
    checkLinks(checked, reporter, QStringLiteral("is reached from no departure point and no bus line"),
               [&reached](const LinkGraph &, int link) { return !reached[std::size_t(link)]; });
}

void checkExit(const Checked &checked, Reporter &reporter) {
    const LinkGraph &graph = checked.made<LinkGraph>();
    std::vector<int> exits;
    for (int i = 0; i < int(checked.network().links.size()); ++i) {
        if (!graph.isLeft(i))
            exits.push_back(i);
    }
    if (exits.empty())
        return; // where all roads lead on, traffic ends on any of them
    const std::vector<char> reached = graph.reachedFrom(exits, LinkGraph::Direction::Backwards);
    checkLinks(checked, reporter, QStringLiteral("leads to no road on which traffic can leave the network"),
               [&reached](const LinkGraph &, int link) { return !reached[std::size_t(link)]; });
}

/// Finds lanes of links that are entered, or left, where the lane itself is not.
void checkLanes(const Checked &checked, Reporter &reporter, bool entered) {
    const LinkGraph &graph = checked.made<LinkGraph>();
    const auto &links = checked.network().links;
    for (std::size_t i = 0; i < links.size(); ++i) {
        if (entered ? !graph.isEntered(int(i)) : !graph.isLeft(int(i)))
            continue;
        for (const Lane *lane : links[i]->mlLane) {
            if (!(entered ? graph.isEntered(lane) : graph.isLeft(lane)))
                findLane(reporter, *lane, *links[i],
                         entered ? QStringLiteral("is entered from no lane")
                                 : QStringLiteral("leads to no lane"),
                         placeOf(*links[i]));
        }
    }
}

void checkLaneEntered(const Checked &checked, Reporter &reporter) {
    checkLanes(checked, reporter, true);
}

void checkLaneLeft(const Checked &checked, Reporter &reporter) {
    checkLanes(checked, reporter, false);
}

void checkLaneCount(const Checked &checked, Reporter &reporter) {
    for (const auto &link : checked.network().links) {
        // A fraction counts as a lane.
        if (!link->mlLane.isEmpty() && std::ceil(link->laneNumber) != link->mlLane.size())
            findObject(reporter, *link,
                       QStringLiteral("has %1 as its number of lanes and has %2")
                           .arg(shown(link->laneNumber), QString::number(link->mlLane.size())));
    }
}

void checkHasLanes(const Checked &checked, Reporter &reporter) {
    for (const auto &link : checked.network().links) {
        if (link->mlLane.isEmpty())
            findObject(reporter, *link, QStringLiteral("has no lanes"), placeOf(*link));
    }
}

std::vector<int> serialNumbersOf(const Link &link) {
    std::vector<int> numbers;
    for (const Lane *lane : link.mlLane)
        numbers.push_back(lane->serialNumber);
    std::sort(numbers.begin(), numbers.end());
    return numbers;
}

void checkNumberTwice(const Checked &checked, Reporter &reporter) {
    for (const auto &link : checked.network().links) {
        const std::vector<int> numbers = serialNumbersOf(*link);
        const auto twice = std::adjacent_find(numbers.begin(), numbers.end());
        if (twice != numbers.end())
            findObject(
                reporter, *link,
                QStringLiteral("has more than one lane with the number %1").arg(QString::number(*twice)));
    }
}

void checkNumberGap(const Checked &checked, Reporter &reporter) {
    for (const auto &link : checked.network().links) {
        std::vector<int> numbers = serialNumbersOf(*link);
        numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
        if (!numbers.empty() && (numbers.front() != 1 || numbers.back() != int(numbers.size())))
            findObject(reporter, *link,
                       QStringLiteral("has lanes with the numbers %1 to %2 and %3 of them, not 1 to %3")
                           .arg(QString::number(numbers.front()), QString::number(numbers.back()),
                                QString::number(int(numbers.size()))));
    }
}

void checkSpeeds(const Checked &checked, Reporter &reporter) {
    for (const auto &link : checked.network().links) {
        if (!isPositive(link->limitSpeed))
            findObject(reporter, *link,
                       QStringLiteral("has a speed limit of %1 km/h").arg(shown(link->limitSpeed)));
    }
}

void checkSpeedOrder(const Checked &checked, Reporter &reporter) {
    for (const auto &link : checked.network().links) {
        if (link->minSpeed > link->limitSpeed || link->desiredSpeed > link->limitSpeed)
            findObject(reporter, *link,
                       QStringLiteral(
                           "has a lowest speed of %1 km/h, a desired one of %2 km/h, and a limit of %3 km/h")
                           .arg(shown(link->minSpeed), shown(link->desiredSpeed), shown(link->limitSpeed)));
    }
}

} // namespace

std::vector<Rule> topologyRules() {
    return {
        {"connector.lane-of-other-link", "topology", Severity::Error, Scope::Objects,
         "A connector joins a lane that is none of the links between which it lies.",
         "Join lanes of the connector's own links, or make a connector between the links of the lanes.",
         checkLanesOfLinks},
        {"connector.without-lanes", "topology", Severity::Warning, Scope::Objects,
         "A connector joins no lanes, so nothing can use it.",
         "Add lane connectors, or remove the connector.", checkConnectorPaths},
        {"connector.twice", "topology", Severity::Warning, Scope::Objects,
         "Two connectors lead from one link to the same other one.",
         "Put the lane connectors of both into one.", checkConnectorTwice},
        {"connector.path-twice", "topology", Severity::Warning, Scope::Objects,
         "A connector joins the same two lanes more than once.", "Take all but one of them out.",
         checkPathTwice},
        {"link.isolated", "topology", Severity::Note, Scope::Objects,
         "A link has no connector at either end.",
         "Join it to others, unless it stands alone by intention (a footway).", checkIsolated},
        {"link.dead-end", "topology", Severity::Note, Scope::Objects,
         "A link is entered and nothing leads on from it.",
         "Nothing where traffic leaves the network; else join it to the next link.", checkDeadEnd},
        {"link.not-reached", "topology", Severity::Note, Scope::Objects,
         "No way leads to a link from any departure point or from the first link of any bus line.",
         "Nothing where no traffic is meant to be; else look for a connector that is missing.", checkReached},
        {"link.reaches-no-exit", "topology", Severity::Note, Scope::Objects,
         "No way leads from a link to one that ends at the border of the network, though there are such.",
         "Look for a connector that is missing; vehicles without a route go round in circles there.",
         checkExit},
        {"lane.not-entered", "topology", Severity::Note, Scope::Objects,
         "A lane is entered from no other, though its link is.",
         "Nothing where the lane begins there; else add the lane connector.", checkLaneEntered},
        {"lane.not-left", "topology", Severity::Note, Scope::Objects,
         "A lane leads to no other, though its link leads on.",
         "Nothing where the lane ends there; else add the lane connector.", checkLaneLeft},
        {"link.without-lanes", "topology", Severity::Warning, Scope::Objects,
         "A link has no lanes, so nothing can drive on it.", "Make its lanes (createLanes()), or remove it.",
         checkHasLanes},
        {"link.lane-count-differs", "topology", Severity::Warning, Scope::Objects,
         "The number of lanes that a link has is not the number that it says.", "Set its number of lanes.",
         checkLaneCount},
        {"link.lane-number-twice", "topology", Severity::Error, Scope::Objects,
         "Two lanes of a link have the same number, so what names a lane by its number names two.",
         "Number the lanes 1, 2, ... from the right.", checkNumberTwice},
        {"link.lane-number-gap", "topology", Severity::Warning, Scope::Objects,
         "The numbers of a link's lanes are not 1, 2, ... without a gap.",
         "Number the lanes 1, 2, ... from the right.", checkNumberGap},
        {"link.speed-limit-not-positive", "topology", Severity::Warning, Scope::Objects,
         "The speed limit of a link is not above 0.", "Set the limit; close the road by a road-work zone.",
         checkSpeeds},
        {"link.speeds-contradict", "topology", Severity::Warning, Scope::Objects,
         "The lowest or the desired speed of a link is above its limit.", "Set the speeds.", checkSpeedOrder},
    };
}

} // namespace moratools
