#pragma once

#include <QString>

/// What a removal does with an object that refers to what is removed.
enum class Fate {
    Part, ///< belongs to it and goes with it
    Goes, ///< cannot be without it: a connector without one of its links
    Loses ///< stays, and lets go of it: a composition without one of its vehicle types
};

/// What to do about objects that refer to one that is to be removed. Its parts go with it in any case.
enum class Cascade {
    Refuse, ///< nothing is removed while there are any
    Take    ///< they go or let go, and so on with what refers to them
};

/// An object that refers to another one.
struct NetObject {
    QString table;                ///< its table, "Connector"
    long id = 0;                  ///< a lane pair of a route has the route's
    const void *object = nullptr; ///< in a NetContents, the object; null for one of a store
    QString text;                 ///< in words, "connector 17"
    Fate fate = Fate::Goes;
};
