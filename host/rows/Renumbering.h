#pragma once

#include <QHash>
#include <QString>

#include <vector>

/// New identifiers for those of a network's rows that the target has already; the others stay.
class Renumbering {
public:
    /// The identifiers of one table, ascending: those of the network, and which of them are taken. The taken
    /// ones get `first` and what follows. Throws `Failure` when they would need more than 32 bits, which is
    /// what programs read.
    void add(const QString &table, std::vector<qint64> own, std::vector<qint64> taken, qint64 first);

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
