#pragma once

#include <QString>

namespace moratools {

/// What SUMO knows of a road or a lane of which a store has nothing but a word.
namespace roadkinds {

/// An edge type of OpenStreetMap and the right of way that it has: edges of a higher priority go first.
struct Type {
    const char *id; ///< "highway.primary"
    int priority;
};

/// That of a link type, in either language; of a word of one's own none (null).
const Type *typeOf(const QString &linkType);

/// Which vehicle classes may use a lane, of which one is empty.
struct Permissions {
    QString allow;
    QString disallow;

    bool isForAll() const { return allow.isEmpty() && disallow.isEmpty(); }
};

/// Those of a kind of lane, in either language: on a motor lane everything that drives on roads but bicycles may drive, on
/// a shared lane bicycles, too; a bus lane is for buses and coaches, a non-motor lane for bicycles, a sidewalk for pedestrians.
/// A word of one's own is a motor lane.
Permissions permissionsOf(const QString &actionType);

/// Whether both are one word of the vocabulary, in whichever language, or are equal.
bool isSameWord(const QString &a, const QString &b);

} // namespace roadkinds

} // namespace moratools
