#pragma once

#include "tools/MoraToolsExport.h"

#include <QString>
#include <QStringList>
#include <QVector>

namespace moratools {

/// What an import has to leave out, because a reference leads nowhere or the store has no place for it:
/// counted by kind, with the first ten of each kind named.
class MORATOOLS_EXPORT LeftOut {
public:
    /// One more of a kind of things ("vehicles"); `what` names it and says why.
    void add(const QString &kind, const QString &what) { add(kind, 1, what); }
    void add(const QString &kind, qint64 count, const QString &what);

    qint64 vehicles = 0; ///< that would have departed

    bool isEmpty() const { return mKinds.isEmpty(); }
    qint64 count() const;
    qint64 count(const QString &kind) const;

    /// "14 flows, 3 turn ratios"
    QString summary() const;
    /// A line for each kind and one for each that is named.
    QStringList lines() const;

private:
    struct Kind {
        QString name;
        qint64 count = 0;
        QStringList named;
    };

    QVector<Kind> mKinds;
};

} // namespace moratools
