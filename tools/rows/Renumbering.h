#pragma once

#include <QHash>
#include <QString>

#include <vector>

namespace moratools {

/// New identifiers for those of a network's rows that the target has already; the others stay.
class Renumbering {
public:
    /// The first of `count` new identifiers behind the largest one that is in use; 0 when none is wanted.
    /// Throws `Failure` when they would need more than 32 bits, which is what programs read.
    static qint64 firstAfter(qint64 largest, qint64 count, const QString &table);

    /// The identifiers of one table, ascending: those of the network, and which of them are taken. The taken
    /// ones get what follows `largest`.
    void add(const QString &table, std::vector<qint64> own, std::vector<qint64> taken, qint64 largest);

    bool has(const QString &table, qint64 id) const;
    qint64 of(const QString &table, qint64 id) const;
    /// How many get a new one.
    qint64 count() const;

private:
    struct Ids {
        std::vector<qint64> own;
        std::vector<qint64> taken;
        qint64 first = 0;
    };

    QHash<QString, Ids> mTables;
};

} // namespace moratools
