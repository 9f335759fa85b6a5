#pragma once

#include "tools/MoraToolsExport.h"
#include "tools/sumo/reader/SumoCompanions.h"

#include <QString>
#include <QStringList>
#include <QVector>

#include <vector>

namespace moratools {

/// What an import has to leave out, because a reference leads nowhere or the store has no place for it:
/// counted by kind, with the first ten of each kind named.
class MORATOOLS_EXPORT LeftOut {
public:
    /// One more of a kind of things ("vehicles"); `what` names it and says why.
    void add(const QString &kind, const QString &what) { add(kind, 1, what); }
    void add(const QString &kind, qint64 count, const QString &what);
    /// The same for an element of a file, which is left out as it stands there, with all that is in it.
    void add(const QString &kind, const QString &what, const SumoSource &source, const QString &reason);
    /// The same for an element that is kept as it stands all the same; only what it would have become is missing.
    void addKept(const QString &kind, const QString &what, const SumoSource &source);

    /// An element that was left out.
    struct Element {
        SumoSource source;
        QString reason;
    };
    const std::vector<Element> &elements() const { return mElements; }
    const std::vector<SumoSource> &keptElements() const { return mKeptElements; }

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
    std::vector<Element> mElements;
    std::vector<SumoSource> mKeptElements;
};

} // namespace moratools
