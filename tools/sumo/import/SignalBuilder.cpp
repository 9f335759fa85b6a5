#include "tools/sumo/import/SignalBuilder.h"

#include "model/SpecialWords.h"
#include "model/Words.h"
#include "tools/session/StoreSession.h"

#include <cmath>

namespace moratools {

namespace {

constexpr int kEndOfDay = 86400;

QString colourOf(const SpecialWords &words, QChar state) {
    switch (state.toLatin1()) {
    case 'G':
    case 'g':
        return words.getWord(Words::Green);
    case 'Y':
    case 'y':
        return words.getWord(Words::Yellow);
    case 'r':
    case 'R':
    case 'u':
    case 's':
        return words.getWord(Words::Red);
    default:
        return words.getWord(Words::Grey);
    }
}

QList<Online::ColorInterval> coloursOf(const SpecialWords &words, const PlannedGroup &planned, int index) {
    QList<Online::ColorInterval> colours;
    double end = 0;
    for (const std::size_t place : planned.cycle) {
        const SumoPhase &phase = planned.programme->phases[place];
        const long start = std::lround(end);
        end += phase.duration;
        const int seconds = int(std::lround(end) - start);
        const QString colour = colourOf(words, index < phase.state.size() ? phase.state.at(index) : QChar());
        if (!colours.isEmpty() && colours.last().color == colour)
            colours.last().interval += seconds;
        else
            colours.append(Online::ColorInterval(colour, seconds));
    }
    return colours;
}

std::unique_ptr<SignalGroup> buildGroup(const PlannedGroup &planned, IdSource &ids) {
    const SumoProgramme &programme = *planned.programme;
    auto group = std::make_unique<SignalGroup>();
    group->signalGroupID = ids.next("SignalGroup");
    group->name = planned.name;
    double cycle = 0;
    for (const std::size_t place : planned.cycle)
        cycle += programme.phases[place].duration;
    group->timeLength = int(std::lround(cycle));
    group->startTime = int(std::lround(planned.start));
    group->endTime = kEndOfDay;
    const int signalCount = programme.signalCount();
    for (int index = 0; index < signalCount; ++index) {
        auto phase = std::make_unique<SignalPhase>();
        phase->signalPhaseID = ids.next("SignalPhase");
        phase->serialNumber = index + 1;
        phase->name = QString::number(index);
        phase->mlColor = coloursOf(ids.store().words(), planned, index);
        group->mlPhase.append(phase.release());
    }
    return group;
}

std::unique_ptr<SignalLamp> buildLamp(const SumoConnection &connection, const SignalGroup &group,
                                      const NetworkMap &network, IdSource &ids) {
    const LanePlace from = network.lane(connection.from, connection.fromLane);
    const GeometryPoint stopLine = from.source->shape.back();
    auto lamp = std::make_unique<SignalLamp>();
    lamp->signalLampID = ids.next("SignalLamp");
    lamp->name = QStringLiteral("%1:%2").arg(connection.tl, QString::number(connection.linkIndex));
    lamp->laneID = int(from.lane->laneID);
    lamp->toLaneID = int(network.lane(connection.to, connection.toLane).lane->laneID);
    lamp->x = stopLine.x;
    lamp->y = stopLine.y;
    lamp->z = stopLine.z;
    lamp->setPhase(group.mlPhase.at(connection.linkIndex));
    return lamp;
}

} // namespace

void buildSignals(const SignalPlan &plan, const NetworkMap &network, IdSource &ids, TrafficObjects &into) {
    for (const PlannedGroup &group : plan.groups)
        into.signalGroups.push_back(buildGroup(group, ids));
    for (const PlannedLamp &lamp : plan.lamps)
        into.signalLamps.push_back(buildLamp(*lamp.connection, *into.signalGroups[lamp.group], network, ids));
}

} // namespace moratools
