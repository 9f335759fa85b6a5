#include "tools/sumo/import/SignalPlan.h"

#include <QFileInfo>
#include <QSet>

#include <algorithm>

namespace moratools {

namespace {

QSet<QString> idsThatOccurTwice(const std::vector<PlannedGroup> &groups) {
    QSet<QString> seen;
    QSet<QString> twice;
    for (const PlannedGroup &group : groups)
        (seen.contains(group.programme->id) ? twice : seen).insert(group.programme->id);
    return twice;
}

void giveNames(std::vector<PlannedGroup> &groups) {
    const QSet<QString> twice = idsThatOccurTwice(groups);
    QHash<QString, int> count;
    for (PlannedGroup &group : groups) {
        const SumoProgramme &programme = *group.programme;
        group.name = twice.contains(programme.id)
                         ? QStringLiteral("%1/%2").arg(programme.id, programme.programID)
                         : programme.id;
        const int number = ++count[group.name];
        if (number > 1)
            group.name += QStringLiteral(" (%1)").arg(number);
    }
}

/// The signals of railways and their crossings follow the trains: they have no programme.
QSet<QString> railwaySignals(const SumoNet &net) {
    QSet<QString> ids;
    for (const SumoJunction &junction : net.junctions) {
        if (junction.type.startsWith(QLatin1String("rail_")))
            ids.insert(junction.id);
    }
    return ids;
}

} // namespace

SignalPlan planSignals(const SumoNet &net, const SumoCompanions &companions, LeftOut &leftOut) {
    SignalPlan plan;
    for (const auto *programmes : {&net.programmes, &companions.programmes}) {
        for (const SumoProgramme &programme : *programmes)
            plan.groups.push_back({QString(), &programme});
    }
    giveNames(plan.groups);
    QHash<QString, std::size_t> running;
    for (std::size_t i = 0; i < plan.groups.size(); ++i)
        running.insert(plan.groups[i].programme->id, i);
    const QSet<QString> railway = railwaySignals(net);
    for (const SumoConnection &connection : net.connections) {
        const auto group = running.constFind(connection.tl);
        if (connection.tl.isEmpty() || (group == running.constEnd() && railway.contains(connection.tl)))
            continue;
        const bool known = group != running.constEnd() && connection.linkIndex >= 0 &&
                           connection.linkIndex < plan.groups[*group].programme->signalCount();
        if (known)
            plan.lamps.push_back({&connection, *group});
        else
            leftOut.add(QStringLiteral("signal lamps"),
                        QStringLiteral("\"%1_%2->%3_%4\" (%5, line %6: programme \"%7\" has no signal %8)")
                            .arg(connection.from, QString::number(connection.fromLane), connection.to,
                                 QString::number(connection.toLane), QFileInfo(net.path).fileName(),
                                 QString::number(connection.line), connection.tl,
                                 QString::number(connection.linkIndex)));
    }
    return plan;
}

} // namespace moratools
