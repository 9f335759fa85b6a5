#include "tools/sumo/export/ExportedSignals.h"

#include "model/GeometryJson.h"
#include "model/Words.h"
#include "tools/sumo/kept/KeptList.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <set>

namespace moratools {

namespace {

constexpr int kEndOfDay = 86400;

const QString kId = QStringLiteral("id");
const QString kProgramID = QStringLiteral("programID");

/// The letter of a colour, in either language; a signal that shows none of them is off.
QChar letterOf(const QString &colour) {
    if (Words::Green.names(colour))
        return QLatin1Char('G');
    if (Words::Yellow.names(colour))
        return QLatin1Char('y');
    return QLatin1Char(Words::Red.names(colour) ? 'r' : 'O');
}

/// What a signal shows in that second of the cycle; its last colour holds until the end.
QChar letterAt(const SignalPhase &phase, int second) {
    int end = 0;
    for (const Online::ColorInterval &step : phase.mlColor) {
        end += int(step.interval);
        if (second < end)
            return letterOf(step.color);
    }
    return phase.mlColor.isEmpty() ? QLatin1Char('O') : letterOf(phase.mlColor.last().color);
}

/// The way from lane to lane: that of the store, or the straight one.
GeometryLine wayOf(const LaneConnector &path) {
    const GeometryLine drawn = geometryjson::points(path.centerLinePointsJson);
    if (drawn.size() >= 2)
        return drawn;
    const GeometryLine from = geometryjson::points(path.mpStartLane->centerLinePointsJson);
    const GeometryLine to = geometryjson::points(path.mpEndLane->centerLinePointsJson);
    return from.isEmpty() || to.isEmpty() ? GeometryLine() : GeometryLine{from.last(), to.first()};
}

double cross(const GeometryPoint &o, const GeometryPoint &a, const GeometryPoint &b) {
    return (a.x - o.x) * (b.y - o.y) - (a.y - o.y) * (b.x - o.x);
}

bool doCross(const GeometryLine &one, const GeometryLine &other) {
    for (int i = 0; i + 1 < one.size(); ++i) {
        for (int j = 0; j + 1 < other.size(); ++j) {
            const bool apart =
                cross(one[i], one[i + 1], other[j]) * cross(one[i], one[i + 1], other[j + 1]) >= 0 ||
                cross(other[j], other[j + 1], one[i]) * cross(other[j], other[j + 1], one[i + 1]) >= 0;
            if (!apart)
                return true;
        }
    }
    return false;
}

/// Who goes ahead comes before who turns to the near side, and that before who crosses to the far side.
int rankOf(const LaneConnector &path, bool leftHand) {
    const GeometryLine from = geometryjson::points(path.mpStartLane->centerLinePointsJson);
    const GeometryLine to = geometryjson::points(path.mpEndLane->centerLinePointsJson);
    if (from.size() < 2 || to.size() < 2)
        return 0;
    const GeometryPoint a = from[from.size() - 2];
    const GeometryPoint b = from.last();
    const double dx = to[1].x - to[0].x;
    const double dy = to[1].y - to[0].y;
    const double ahead = (b.x - a.x) * dx + (b.y - a.y) * dy;
    const double left = (b.x - a.x) * dy - (b.y - a.y) * dx;
    if (ahead > std::abs(left)) // less than 45 degrees
        return 0;
    return (left > 0) == leftHand ? 1 : 2;
}

/// A programme of SUMO: one signal may have several.
struct Ids {
    QString tl;
    QString programID;
};

/// Those that an import made the group's name of: groups of one signal are called "SIGNAL/PROGRAMME".
std::optional<Ids> idsOf(const SignalGroup &group, const Objects<SignalGroup> &all) {
    const int slash = group.name.lastIndexOf(QLatin1Char('/'));
    const QString signal = group.name.left(slash + 1);
    const bool isOneOfSeveral = slash > 0 && std::any_of(all.begin(), all.end(), [&](const auto &other) {
                                    return other.get() != &group && other->name.startsWith(signal);
                                });
    if (!isOneOfSeveral)
        return std::nullopt;
    return Ids{group.name.left(slash), group.name.mid(slash + 1)};
}

} // namespace

QString programmeKey(const KeptElement &programme) {
    const QString *id = programme.attribute(kId);
    const QString *programID = programme.attribute(kProgramID);
    return (id ? *id : QString()) + QLatin1Char('/') + (programID ? *programID : QStringLiteral("0"));
}

ExportedSignals::ExportedSignals(const ExportedRoads &roads, const Digests &digests,
                                 const QSet<QString> &elsewhere, Names &names, LeftOut &leftOut)
    : mRoads(roads) {
    QHash<QString, KeptElement> kept; // by digest
    KeptList::fromJson(roads.kept().value(QStringLiteral("programmes")))
        .forEach([&kept](const KeptEntry &entry) { kept.insert(entry.of, entry.element); });
    const auto &groups = roads.network().traffic.signalGroups;
    std::vector<Names::Named> named;
    for (const auto &group : groups)
        named.push_back({group.get(), group->name, group->signalGroupID, true});
    names.give(QStringLiteral("tlLogics"), QStringLiteral("signal"), named);
    std::map<const SignalGroup *, Ids> ids;
    std::map<const SignalGroup *, KeptElement> asKept;
    for (const auto &group : groups) {
        const auto found = kept.constFind(digests.of(*group));
        Ids &own = ids[group.get()];
        own = idsOf(*group, groups).value_or(Ids{names.of(group.get()), QStringLiteral("0")});
        if (found != kept.constEnd() && found->attribute(kId)) {
            asKept.emplace(group.get(), *found);
            own.tl = *found->attribute(kId);
        }
        for (int i = 0; i < group->mlPhase.size(); ++i)
            mControlOfPhase.insert(group->mlPhase[i], {own.tl, i});
    }
    findControls(leftOut);
    std::set<QString> shown;
    for (const Control &each : qAsConst(mControls))
        shown.insert(each.tl);
    for (const auto &group : groups) {
        const Ids &own = ids.at(group.get());
        const auto found = asKept.find(group.get());
        if (!shown.count(own.tl) && found == asKept.end()) {
            leftOut.add(QStringLiteral("signal groups"),
                        QStringLiteral("signal group %1 (%2: no lamp between two lanes shows it)")
                            .arg(QString::number(group->signalGroupID), group->name));
            continue;
        }
        mTls.insert(own.tl);
        KeptElement programme =
            found != asKept.end() ? found->second : programmeOf(*group, own.tl, own.programID, leftOut);
        auto &file = elsewhere.contains(programmeKey(programme)) ? mElsewhere : mProgrammes;
        file.push_back(std::move(programme));
    }
}

std::optional<ExportedSignals::Control> ExportedSignals::control(const Lane &from, const Lane &to) const {
    const auto found = mControls.constFind({&from, &to});
    return found == mControls.cend() ? std::nullopt : std::optional<Control>(*found);
}

void ExportedSignals::findControls(LeftOut &leftOut) {
    QHash<long, std::vector<const LaneConnector *>> pathsFrom;
    for (const Connector *connector : mRoads.connectors()) {
        for (const LaneConnector *path : connector->mlLaneConnector) {
            if (path->mpStartLane && path->mpEndLane)
                pathsFrom[path->mpStartLane->laneID].push_back(path);
        }
    }
    for (const auto &lamp : mRoads.network().traffic.signalLamps) {
        const auto known = mControlOfPhase.constFind(lamp->mpPhase.data());
        bool controls = false;
        for (const LaneConnector *path : pathsFrom.value(lamp->laneID)) {
            // A lamp that leads to no lane is for all who leave its own.
            if (known == mControlOfPhase.cend() ||
                (lamp->toLaneID != 0 && lamp->toLaneID != path->mpEndLane->laneID))
                continue;
            controls = true;
            mControls.insert({path->mpStartLane, path->mpEndLane}, *known);
            mShown[lamp->mpPhase.data()].push_back(path);
        }
        if (!controls)
            leftOut.add(QStringLiteral("signal lamps"),
                        QStringLiteral("signal lamp %1 (%2: it shows no phase to anybody)")
                            .arg(QString::number(lamp->signalLampID), lamp->name));
    }
}

KeptElement ExportedSignals::programmeOf(const SignalGroup &group, const QString &tl,
                                         const QString &programID, LeftOut &leftOut) const {
    KeptElement programme{QStringLiteral("tlLogic"),
                          {{kId, tl},
                           {QStringLiteral("type"), QStringLiteral("static")},
                           {kProgramID, programID},
                           {QStringLiteral("offset"), QString::number(group.startTime)}},
                          {}};
    addPhases(programme, group);
    if (group.endTime > 0 && group.endTime < kEndOfDay)
        leftOut.add(QStringLiteral("ends of signal plans"),
                    QStringLiteral("signal group %1 (%2: a programme of SUMO goes on)")
                        .arg(QString::number(group.signalGroupID), group.name));
    return programme;
}

void ExportedSignals::addPhases(KeptElement &programme, const SignalGroup &group) const {
    std::set<int> changes{0};
    int cycle = group.timeLength;
    for (const SignalPhase *phase : group.mlPhase) {
        int end = 0;
        for (const Online::ColorInterval &step : phase->mlColor)
            changes.insert(end += int(step.interval));
        if (group.timeLength <= 0)
            cycle = std::max(cycle, end);
    }
    changes.erase(changes.lower_bound(std::max(cycle, 1)), changes.end());
    for (auto change = changes.begin(); change != changes.end(); ++change) {
        const int end = std::next(change) == changes.end() ? std::max(cycle, 1) : *std::next(change);
        programme.children.push_back(
            KeptElement{QStringLiteral("phase"),
                        {{QStringLiteral("duration"), QString::number(end - *change)},
                         {QStringLiteral("state"), stateAt(group, *change)}},
                        {}});
    }
}

QString ExportedSignals::stateAt(const SignalGroup &group, int second) const {
    QString state;
    for (int i = 0; i < group.mlPhase.size(); ++i) {
        const QChar letter = letterAt(*group.mlPhase[i], second);
        const bool yields = letter == QLatin1Char('G') && mustYield(group, i, second);
        state += yields ? QLatin1Char('g') : letter;
    }
    return state;
}

bool ExportedSignals::mustYield(const SignalGroup &group, int index, int second) const {
    const std::vector<const LaneConnector *> own = mShown.value(group.mlPhase[index]);
    const auto yieldsTo = [&](const LaneConnector *theirs) {
        return std::any_of(own.begin(), own.end(), [&](const LaneConnector *path) {
            return path->mpStartLane != theirs->mpStartLane &&
                   rankOf(*path, mRoads.isLeftHand()) > rankOf(*theirs, mRoads.isLeftHand()) &&
                   (path->mpEndLane == theirs->mpEndLane || doCross(wayOf(*path), wayOf(*theirs)));
        });
    };
    return std::any_of(group.mlPhase.begin(), group.mlPhase.end(), [&](const SignalPhase *other) {
        const QChar letter = letterAt(*other, second);
        if (letter != QLatin1Char('G') && letter != QLatin1Char('y'))
            return false;
        const std::vector<const LaneConnector *> all = mShown.value(other);
        return std::any_of(all.begin(), all.end(), yieldsTo);
    });
}

} // namespace moratools
