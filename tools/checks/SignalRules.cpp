#include "model/Words.h"
#include "tools/checks/Checked.h"
#include "tools/checks/Finding.h"
#include "tools/checks/RuleGroups.h"
#include "tools/checks/SignalMovements.h"

#include <algorithm>
#include <iterator>

namespace moratools {

namespace {

QString called(const SignalGroup &group) {
    return moratools::called(QStringLiteral("signal group"), group.signalGroupID, group.name);
}

QString called(const SignalPhase &phase, const SignalGroup &group) {
    return QStringLiteral("%1 of %2")
        .arg(moratools::called(QStringLiteral("signal phase"), phase.signalPhaseID, phase.name),
             called(group));
}

QString called(const SignalLamp &lamp) {
    return moratools::called(QStringLiteral("signal lamp"), lamp.signalLampID, lamp.name);
}

/// Calls `use` with each group.
template <class Use>
void forEachGroup(const Checked &checked, const Use &use) {
    for (const auto &group : checked.network().traffic.signalGroups)
        use(*group);
}

/// Calls `use` with each phase and its group.
template <class Use>
void forEachPhase(const Checked &checked, const Use &use) {
    forEachGroup(checked, [&use](const SignalGroup &group) {
        for (const SignalPhase *phase : group.mlPhase)
            use(*phase, group);
    });
}

void findLamp(Reporter &reporter, const SignalLamp &lamp, const QString &what) {
    reporter.find("SignalLamp", lamp.signalLampID, QStringLiteral("%1 %2").arg(called(lamp), what),
                  QPointF(lamp.x, lamp.y));
}

/// A phase is where its first lamp stands.
void findPhase(Reporter &reporter, const SignalPhase &phase, const SignalGroup &group, const QString &what) {
    const QString text = QStringLiteral("%1 %2").arg(called(phase, group), what);
    if (phase.mlLamp.isEmpty())
        reporter.find("SignalPhase", phase.signalPhaseID, text);
    else
        reporter.find("SignalPhase", phase.signalPhaseID, text,
                      QPointF(phase.mlLamp.first()->x, phase.mlLamp.first()->y));
}

bool shows(const SignalPhase &phase, const Words::Word &colour) {
    return std::any_of(phase.mlColor.begin(), phase.mlColor.end(),
                       [&colour](const Online::ColorInterval &step) {
                           return colour.names(step.color) && step.interval > 0;
                       });
}

void checkCycle(const Checked &checked, Reporter &reporter) {
    forEachGroup(checked, [&reporter](const SignalGroup &group) {
        if (group.timeLength <= 0 && !group.mlPhase.isEmpty())
            reporter.find(
                "SignalGroup", group.signalGroupID,
                QStringLiteral("%1 has a cycle of %2").arg(called(group), QString::number(group.timeLength)));
    });
}

void checkTimes(const Checked &checked, Reporter &reporter) {
    forEachGroup(checked, [&reporter](const SignalGroup &group) {
        if (group.endTime < group.startTime)
            reporter.find(
                "SignalGroup", group.signalGroupID,
                QStringLiteral("%1 runs from %2 to %3")
                    .arg(called(group), QString::number(group.startTime), QString::number(group.endTime)));
    });
}

void checkEmptyGroup(const Checked &checked, Reporter &reporter) {
    forEachGroup(checked, [&reporter](const SignalGroup &group) {
        if (group.mlPhase.isEmpty())
            reporter.find("SignalGroup", group.signalGroupID,
                          QStringLiteral("%1 has no phase").arg(called(group)));
    });
}

void checkFill(const Checked &checked, Reporter &reporter) {
    forEachPhase(checked, [&reporter](const SignalPhase &phase, const SignalGroup &group) {
        long length = 0;
        for (const Online::ColorInterval &step : phase.mlColor)
            length += step.interval;
        if (length != group.timeLength && !phase.mlColor.isEmpty())
            findPhase(reporter, phase, group,
                      QStringLiteral("lasts %1 of a cycle of %2")
                          .arg(QString::number(length), QString::number(group.timeLength)));
    });
}

void checkColours(const Checked &checked, Reporter &reporter) {
    forEachPhase(checked, [&reporter](const SignalPhase &phase, const SignalGroup &group) {
        if (phase.mlColor.isEmpty())
            findPhase(reporter, phase, group, QStringLiteral("has no colour"));
    });
}

void checkUnknownColours(const Checked &checked, Reporter &reporter) {
    forEachPhase(checked, [&reporter](const SignalPhase &phase, const SignalGroup &group) {
        for (const Online::ColorInterval &step : phase.mlColor) {
            if (!Words::isKnown(step.color))
                findPhase(reporter, phase, group, QStringLiteral("shows the colour \"%1\"").arg(step.color));
        }
    });
}

void checkDurations(const Checked &checked, Reporter &reporter) {
    forEachPhase(checked, [&reporter](const SignalPhase &phase, const SignalGroup &group) {
        for (const Online::ColorInterval &step : phase.mlColor) {
            if (step.interval < 0)
                findPhase(reporter, phase, group,
                          QStringLiteral("shows %1 for %2").arg(step.color, QString::number(step.interval)));
        }
    });
}

void checkYellow(const Checked &checked, Reporter &reporter) {
    forEachPhase(checked, [&reporter](const SignalPhase &phase, const SignalGroup &group) {
        // Phases without lamps are for pedestrians, whom clearance does not concern.
        const int count = phase.mlLamp.isEmpty() ? 0 : phase.mlColor.size();
        for (int i = 0; i < count; ++i) {
            // After the last colour comes the first again.
            if (Words::Green.names(phase.mlColor[i].color) &&
                Words::Red.names(phase.mlColor[(i + 1) % count].color)) {
                findPhase(reporter, phase, group, QStringLiteral("goes from green to red without yellow"));
                return;
            }
        }
    });
}

void checkNeverGreen(const Checked &checked, Reporter &reporter) {
    forEachPhase(checked, [&reporter](const SignalPhase &phase, const SignalGroup &group) {
        if (!phase.mlLamp.isEmpty() && shows(phase, Words::Red) && !shows(phase, Words::Green))
            findPhase(reporter, phase, group, QStringLiteral("is red, and never green"));
    });
}

bool hasLamps(const SignalGroup &group) {
    return std::any_of(group.mlPhase.begin(), group.mlPhase.end(),
                       [](const SignalPhase *phase) { return !phase->mlLamp.isEmpty(); });
}

void checkUnusedGroup(const Checked &checked, Reporter &reporter) {
    forEachGroup(checked, [&reporter](const SignalGroup &group) {
        if (!group.mlPhase.isEmpty() && !hasLamps(group))
            reporter.find("SignalGroup", group.signalGroupID,
                          QStringLiteral("%1 has no lamp").arg(called(group)));
    });
}

void checkUnusedPhase(const Checked &checked, Reporter &reporter) {
    forEachPhase(checked, [&reporter](const SignalPhase &phase, const SignalGroup &group) {
        if (phase.mlLamp.isEmpty() && hasLamps(group))
            findPhase(reporter, phase, group, QStringLiteral("has no lamp"));
    });
}

void checkDeadEnds(const Checked &checked, Reporter &reporter) {
    const auto &movements = checked.made<SignalMovements>();
    for (const auto &lamp : checked.network().traffic.signalLamps) {
        if (movements.waysFrom(lamp->laneID).isEmpty())
            findLamp(reporter, *lamp,
                     QStringLiteral("stands on lane %1, which leads nowhere").arg(lamp->laneID));
    }
}

void checkMovements(const Checked &checked, Reporter &reporter) {
    const auto &movements = checked.made<SignalMovements>();
    for (const auto &lamp : checked.network().traffic.signalLamps) {
        if (lamp->toLaneID != 0 && !movements.waysFrom(lamp->laneID).isEmpty() && !movements.wayOf(*lamp))
            findLamp(
                reporter, *lamp,
                QStringLiteral("is for the way from lane %1 to lane %2, and no lane connector joins them")
                    .arg(QString::number(lamp->laneID), QString::number(lamp->toLaneID)));
    }
}

void checkDoubles(const Checked &checked, Reporter &reporter) {
    const auto &movements = checked.made<SignalMovements>();
    QHash<std::pair<long, std::pair<long, const SignalGroup *>>, const SignalLamp *> first;
    for (const auto &lamp : checked.network().traffic.signalLamps) {
        const auto key = std::make_pair(long(lamp->laneID),
                                        std::make_pair(long(lamp->toLaneID), movements.groupOf(*lamp)));
        const SignalLamp *&other = first[key];
        if (other)
            findLamp(reporter, *lamp, QStringLiteral("stands for the same way as %1").arg(called(*other)));
        else
            other = lamp.get();
    }
}

/// A link is signalised where one of its lanes has a lamp.
void checkUnlit(const Checked &checked, Reporter &reporter) {
    const auto &movements = checked.made<SignalMovements>();
    const auto isLit = [&movements](long lane, long to) {
        const SignalMovements::Lamps lamps = movements.lampsOn(lane);
        return std::any_of(lamps.begin(), lamps.end(), [to](const SignalLamp *lamp) {
            return lamp->toLaneID == 0 || lamp->toLaneID == to;
        });
    };
    const auto hasLamp = [&movements](const Lane *lane) { return !movements.lampsOn(lane->laneID).empty(); };
    for (const auto &connector : checked.network().connectors) {
        const auto &lanes = connector->mpStartLink->mlLane;
        if (std::none_of(lanes.begin(), lanes.end(), hasLamp))
            continue;
        for (const LaneConnector *way : connector->mlLaneConnector) {
            if (!way->mpStartLane || !way->mpEndLane ||
                isLit(way->mpStartLane->laneID, way->mpEndLane->laneID))
                continue;
            const GeometryLine line = lineOf(*way);
            reporter.find("LaneConnector", way->laneConnId,
                          QStringLiteral("the way from lane %1 to lane %2 of %3 has no lamp")
                              .arg(QString::number(way->mpStartLane->laneID),
                                   QString::number(way->mpEndLane->laneID),
                                   moratools::called(QStringLiteral("connector"), connector->connID,
                                                     connector->connName)),
                          line.isEmpty() ? QPointF() : QPointF(line.first().x, line.first().y));
        }
    }
}

bool areInConflict(const LaneConnector &a, const GeometryLine &lineA, const LaneConnector &b,
                   const GeometryLine &lineB) {
    return a.mpStartLane != b.mpStartLane && (a.mpEndLane == b.mpEndLane || cross(lineA, lineB));
}

/// Calls `use` with each two lamps of a group whose ways meet, of those for whose phases `isAskedFor`.
template <class IsAskedFor, class Use>
void forEachConflict(const Checked &checked, const IsAskedFor &isAskedFor, const Use &use) {
    const auto &movements = checked.made<SignalMovements>();
    forEachGroup(checked, [&](const SignalGroup &group) {
        struct Lit {
            const SignalLamp *lamp;
            const LaneConnector *way;
            GeometryLine line;
        };
        std::vector<Lit> lit;
        for (const SignalLamp *lamp : movements.lampsOf(group)) {
            if (const LaneConnector *way = movements.wayOf(*lamp))
                lit.push_back({lamp, way, lineOf(*way)});
        }
        for (auto a = lit.begin(); a != lit.end(); ++a) {
            for (auto b = std::next(a); b != lit.end(); ++b) {
                if (isAskedFor(*a->lamp->mpPhase, *b->lamp->mpPhase, group) &&
                    areInConflict(*a->way, a->line, *b->way, b->line))
                    use(*a->lamp, *b->lamp);
            }
        }
    });
}

void checkConflicts(const Checked &checked, Reporter &reporter) {
    forEachConflict(
        checked,
        [](const SignalPhase &a, const SignalPhase &b, const SignalGroup &) {
            return areGreenTogether(a, b);
        },
        [&reporter](const SignalLamp &a, const SignalLamp &b) {
            findLamp(reporter, a,
                     QStringLiteral("is green together with %1, and their ways meet").arg(called(b)));
        });
}

void checkClearance(const Checked &checked, Reporter &reporter) {
    forEachConflict(
        checked,
        [](const SignalPhase &a, const SignalPhase &b, const SignalGroup &group) {
            return isGreenAtOnceAfter(a, b, group.timeLength) || isGreenAtOnceAfter(b, a, group.timeLength);
        },
        [&reporter](const SignalLamp &a, const SignalLamp &b) {
            findLamp(reporter, a,
                     QStringLiteral("and %1 take turns without a second in between, and their ways meet")
                         .arg(called(b)));
        });
}

std::vector<Rule> planRules() {
    return {
        {"signal-group.cycle-not-positive", "signals", Severity::Error, Scope::Objects,
         "A signal plan has no cycle length above 0.",
         "Set timeLength to the sum of the durations of a phase.", checkCycle},
        {"signal-group.times-reversed", "signals", Severity::Warning, Scope::Objects,
         "A signal plan ends before it begins, and never runs.",
         "Exchange the times, or set the end of the day.", checkTimes},
        {"signal-group.empty", "signals", Severity::Note, Scope::Objects, "A signal plan has no phase.",
         "Add the phases, or remove the plan.", checkEmptyGroup},
        {"signal-phase.cycle-not-filled", "signals", Severity::Warning, Scope::Objects,
         "The colours of a phase do not last as long as the cycle of its plan.",
         "Make the durations add up to the cycle.", checkFill},
        {"signal-phase.no-colour", "signals", Severity::Warning, Scope::Objects, "A phase has no colours.",
         "Add the colours in the order in which they are shown.", checkColours},
        {"signal-phase.colour-unknown", "signals", Severity::Error, Scope::Objects,
         "A colour is none of the vocabulary, and means nothing to a simulation.",
         "Use one of Red, Yellow, Green, Grey and White, in the language of the store.", checkUnknownColours},
        {"signal-phase.duration-negative", "signals", Severity::Error, Scope::Objects,
         "A colour is shown for less than no time.", "Set a duration of at least 0.", checkDurations},
        {"signal-phase.yellow-missing", "signals", Severity::Warning, Scope::Objects,
         "A phase goes from green to red at once: vehicles that cannot stop any more run the red.",
         "Put a few seconds of yellow between them.", checkYellow},
        {"signal-phase.never-green", "signals", Severity::Note, Scope::Objects,
         "A phase with lamps is red in all of the cycle: nobody ever drives there.",
         "Give it green, or remove the lamps.", checkNeverGreen},
        {"signal-group.no-lamp", "signals", Severity::Note, Scope::Objects,
         "No lamp shows the colours of a plan; so it is with plans for other times of the day.",
         "Nothing has to be done where the plan is meant to be switched to.", checkUnusedGroup},
        {"signal-phase.no-lamp", "signals", Severity::Note, Scope::Objects,
         "No lamp shows the colours of a phase, though others of its plan have lamps.",
         "Nothing has to be done where the phase is for pedestrians; else add its lamps.", checkUnusedPhase},
    };
}

std::vector<Rule> lampRules() {
    return {
        {"signal-lamp.lane-leads-nowhere", "signals", Severity::Warning, Scope::Objects,
         "A lamp stands on a lane from which no lane connector leads on.",
         "Join the lane to another one, or remove the lamp.", checkDeadEnds},
        {"signal-lamp.way-missing", "signals", Severity::Warning, Scope::Objects,
         "A lamp is for a way between two lanes that no lane connector joins.",
         "Add the lane connector, or let the lamp name another lane.", checkMovements},
        {"signal-lamp.twice", "signals", Severity::Warning, Scope::Objects,
         "Two lamps of one plan stand for the same way, and may show different colours.",
         "Remove one of them.", checkDoubles},
        {"signal-lamp.missing", "signals", Severity::Warning, Scope::Objects,
         "A way has no lamp, though others from the same link have one.",
         "Add a lamp; where vehicles may turn without a signal nothing has to be done.", checkUnlit},
        {"signal-lamp.conflicting-green", "signals", Severity::Note, Scope::Objects,
         "Two ways that cross or end in one lane are green together; who yields is not in the store.",
         "Nothing has to be done where one of them yields, as a left turn does; else change the phases.",
         checkConflicts},
        {"signal-lamp.clearance-missing", "signals", Severity::Warning, Scope::Objects,
         "Of two ways that cross or end in one lane one turns green in the second in which the green of the other ends: "
         "who drove last is still on the crossing.",
         "Put yellow, and where the crossing is wide a few seconds of red for both, between the greens.",
         checkClearance},
    };
}

} // namespace

std::vector<Rule> signalRules() {
    std::vector<Rule> rules = planRules();
    std::vector<Rule> lamps = lampRules();
    std::move(lamps.begin(), lamps.end(), std::back_inserter(rules));
    return rules;
}

} // namespace moratools
