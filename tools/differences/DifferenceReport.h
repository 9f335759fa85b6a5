#pragma once

#include "tools/MoraToolsExport.h"
#include "tools/differences/RowChange.h"
#include "tools/rows/StoreReader.h"

#include <QHash>
#include <QStringList>

#include <vector>

namespace moratools {

/// What differs, for people: object by object, with what belongs to it.
class MORATOOLS_EXPORT DifferenceReport {
public:
    /// Objects of a kind that differ. One of which a part differs is changed.
    struct Count {
        QString kind; ///< as `morastore info` calls it; the table where it is no kind of objects
        int added = 0;
        int removed = 0;
        int changed = 0;
    };

    /// An object that differs.
    struct Difference {
        const char *table;
        qint64 id;
        RowChange::Kind kind; ///< `Changed`, too, where only a part of it comes or goes
    };

    void add(const RowChange &change);
    bool isEmpty() const { return mObjects.empty(); }
    QList<Count> counts() const;
    /// All of them; settings and the like have 0 for an identifier.
    std::vector<Difference> differences() const;
    /// Looks up the names of objects of which only a part differs: in `now`, the network that the changes lead
    /// to. Texts are as the stores have them, on lines of their own.
    QStringList lines(const StoreReader &store, const NamedNetwork &now);

private:
    struct Object {
        const catalogue::Table *table;
        QVariant id;
        QString name;
        std::vector<RowChange> own;
        std::vector<RowChange> parts;
    };

    static RowChange::Kind kindOf(const Object &object);
    Object &objectOf(const RowChange &change);
    void findNames(const StoreReader &store, const NamedNetwork &now);

    std::vector<Object> mObjects;
    QHash<QString, std::size_t> mPlaces; ///< by table and identifier
};

} // namespace moratools
