#pragma once

#include "tests/host/Morastore.h"
#include "tools/checks/CheckRun.h"

#include <QMap>

/// A store with one sound network: the crossing of examples/ with its demand and additional objects, and by hand a
/// row in each table that these leave empty. Every table of the catalogue has rows, so that every rule has
/// something to look at.
class SoundStore : public Morastore {
protected:
    void SetUp() override;

    /// A fresh copy of the sound store after some statements.
    QString storeAfter(const QStringList &statements);
    /// What a check finds, by rule; those that find nothing are missing.
    static QMap<QString, int> findings(const QString &store, const QStringList &rules = {});

    QString mSound;

private:
    int mCopies = 0;
};
