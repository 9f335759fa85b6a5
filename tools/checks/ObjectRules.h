#pragma once

#include "model/NetKinds.h"
#include "tools/checks/Checked.h"
#include "tools/checks/Finding.h"
#include "tools/checks/Rule.h"

#include <cmath>
#include <optional>

namespace moratools {

/// @file
/// What the rules on objects share.

/// What a sentence calls an object of a kind: `link 12 "Via Marconi"`.
template <class T>
QString calledObject(const T &object) {
    using Kind = NetKind<T>;
    return called(QLatin1String(Kind::word), Kind::idOf(object), Kind::nameOf(object));
}

/// Reports an object of a kind; `what` goes on after its name: "has no lane".
template <class T>
void findObject(Reporter &reporter, const T &object, const QString &what,
                const std::optional<QPointF> &place = {}) {
    using Kind = NetKind<T>;
    reporter.find(Finding{0, QLatin1String(Kind::table), Kind::idOf(object),
                          calledObject(object) + QLatin1Char(' ') + what, place});
}

/// What a sentence calls a lane: `lane 7 (number 2 of link 12 "Via Marconi")`.
inline QString calledLane(const Lane &lane, const Link &link) {
    return QStringLiteral("%1 (number %2 of %3)")
        .arg(called(QStringLiteral("lane"), lane.laneID), QString::number(lane.serialNumber),
             calledObject(link));
}

/// Reports a lane, as findObject() does.
inline void findLane(Reporter &reporter, const Lane &lane, const Link &link, const QString &what,
                     const std::optional<QPointF> &place = {}) {
    reporter.find(Finding{0, QStringLiteral("Lane"), lane.laneID,
                          calledLane(lane, link) + QLatin1Char(' ') + what, place});
}

/// A place on a link, for a mark.
inline std::optional<QPointF> placeOf(const Link &link) {
    if (link.mlVertex.isEmpty())
        return std::nullopt;
    const Vertex &middle = *link.mlVertex.at(link.mlVertex.size() / 2);
    return std::isfinite(middle.x) && std::isfinite(middle.y) ? std::optional<QPointF>({middle.x, middle.y})
                                                              : std::nullopt;
}

/// Above 0, and finite.
inline bool isPositive(double value) {
    return value > 0 && std::isfinite(value);
}

/// 0 or above, and finite.
inline bool isAmount(double value) {
    return value >= 0 && std::isfinite(value);
}

} // namespace moratools
