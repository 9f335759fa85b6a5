#pragma once

#include <QHash>
#include <QString>

#include <utility>
#include <vector>

namespace moratools {

/// New identifiers for rows of a network; the others stay.
class Renumbering {
public:
    /// The first of `count` new identifiers behind the largest one that is in use; 0 when none is wanted.
    /// Throws `Failure` when they would need more than 32 bits, which is what programs read.
    static qint64 firstAfter(qint64 largest, qint64 count, const QString &table);

    /// The identifiers of one table, ascending: those of the network, and which of them get the ones that follow
    /// `largest`.
    void add(const QString &table, std::vector<qint64> own, const std::vector<qint64> &taken, qint64 largest);
    /// The same with what each of them gets: pairs of an identifier and its new one, ascending.
    void add(const QString &table, std::vector<qint64> own, std::vector<std::pair<qint64, qint64>> changes);

    bool has(const QString &table, qint64 id) const;
    qint64 of(const QString &table, qint64 id) const;
    /// How many get a new one.
    qint64 count() const;

private:
    struct Ids {
        std::vector<qint64> own;
        std::vector<std::pair<qint64, qint64>> changes;
    };

    QHash<QString, Ids> mTables;
};

} // namespace moratools
