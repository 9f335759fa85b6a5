#pragma once

#include <QHash>
#include <QJsonObject>
#include <QSet>
#include <QString>

#include <vector>

namespace moratools {

/// The ids under which objects go into SUMO's files. An object's name is its id where no other of its kind has that name
/// and SUMO takes it as an id; else one is made of name and number.
class Names {
public:
    /// What is to get an id.
    struct Named {
        const void *object;
        QString name;
        long number;
        bool mayBeId = true; ///< false: whatever the name is, it cannot be the id
    };

    /// Gives ids to all objects of a kind ("edges"); `fallback` is what the id of one without a name begins with. Ids are
    /// unique within the kind, but for what reserve() was given.
    void give(const QString &kind, const QString &fallback, const std::vector<Named> &objects);
    /// An id of that kind that nothing has yet, `wanted` where that is free.
    QString unused(const QString &kind, const QString &wanted);

    /// The id of an object that has one.
    QString of(const void *object) const { return mIds.value(object); }

    /// By kind and id the object's number in the store, if it has one, and, where it differs from the id, its name.
    const QJsonObject &toJson() const { return mKinds; }

    /// Whether netconvert reads such an id of an edge, or of a junction where an edge names it: in these it takes bytes that
    /// are umlauts and accents in Latin-1 for such, also where they are part of another character.
    static bool isLegible(const QString &id);

    /// The text with "_" for what SUMO does not take in an id: blanks and |\'";,<>&*? anywhere, a colon at the start.
    static QString usable(const QString &name);

private:
    QHash<const void *, QString> mIds;
    QHash<QString, QSet<QString>> mTaken;
    QJsonObject mKinds;
};

} // namespace moratools
