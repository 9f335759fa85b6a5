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
        // One may be called what another two make of their ids.
        const int number = ++count[group.name];
        if (number > 1)
            group.name += QStringLiteral(" (%1)").arg(number);
    }
}

QString programmeNamed(const SumoProgramme &programme, const QStringList &files, const SumoNet &net,
                       const QString &reason) {
    const QString path =
        programme.source.file == SumoSource::kNetwork ? net.path : files.value(programme.source.file);
    return QStringLiteral("\"%1\" of signals \"%2\" (%3, line %4: %5)")
        .arg(programme.programID, programme.id, QFileInfo(path).fileName(),
             QString::number(programme.source.line), reason);
}

/// The phases from the first one on, each once, and the place among them to which the last one leads back.
std::pair<std::vector<std::size_t>, std::size_t> runOf(const SumoProgramme &programme) {
    std::vector<std::size_t> run;
    std::vector<int> placeOf(programme.phases.size(), -1);
    for (std::size_t phase = 0; phase < programme.phases.size();) {
        if (placeOf[phase] >= 0)
            return {run, std::size_t(placeOf[phase])};
        placeOf[phase] = int(run.size());
        run.push_back(phase);
        const std::vector<int> &next = programme.phases[phase].next;
        phase = next.empty() ? (phase + 1) % programme.phases.size() : std::size_t(next.front());
    }
    return {run, 0};
}

/// `told` gets a sentence for each phase that more than one may follow.
PlannedGroup groupOf(const SumoProgramme &programme, QStringList &told) {
    PlannedGroup group{QString(), &programme, {}, programme.offset};
    const auto [run, back] = runOf(programme);
    for (std::size_t i = 0; i < run.size(); ++i) {
        const SumoPhase &phase = programme.phases[run[i]];
        // What runs once comes before the cycle.
        if (i < back)
            group.start += phase.duration;
        else
            group.cycle.push_back(run[i]);
        if (phase.next.size() > 1)
            told.append(QStringLiteral("after phase %1 comes phase %2, and no other")
                            .arg(QString::number(run[i]), QString::number(phase.next.front())));
    }
    return group;
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
    QSet<QPair<QString, QString>> seen;
    for (const auto *programmes : {&net.programmes, &companions.programmes}) {
        for (const SumoProgramme &programme : *programmes) {
            const QPair<QString, QString> ids(programme.id, programme.programID);
            if (seen.contains(ids)) {
                const QString fault = QStringLiteral("it occurs a second time");
                leftOut.add(QStringLiteral("signal programmes"),
                            programmeNamed(programme, companions.files, net, fault), programme.source, fault);
                continue;
            }
            QStringList told;
            plan.groups.push_back(groupOf(programme, told));
            for (const QString &choice : told)
                leftOut.add(QStringLiteral("choices between phases"),
                            programmeNamed(programme, companions.files, net, choice));
            seen.insert(ids);
        }
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
