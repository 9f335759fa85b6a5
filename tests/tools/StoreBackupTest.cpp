#include "tools/session/StoreBackup.h"
#include "tests/support/OldStores.h"

#include <QFileInfo>
#include <QSet>
#include <QTemporaryDir>

#include <gtest/gtest.h>

TEST(StoreBackup, CopiesOfOneSecondStandBesideEachOther) {
    const QTemporaryDir folder;
    const QString store = folder.filePath(QStringLiteral("store"));
    copyTemplate("EmptyNet_V6.0.0", store);
    // At least two of them in the same second.
    QSet<QString> copies;
    for (int i = 0; i < 3; ++i)
        copies.insert(moratools::keepCopy(store, QStringLiteral("fix")));
    EXPECT_EQ(copies.size(), 3);
    for (const QString &copy : qAsConst(copies)) {
        EXPECT_TRUE(copy.startsWith(store + QStringLiteral(".before-fix-"))) << copy.toStdString();
        EXPECT_GT(QFileInfo(copy).size(), 0);
    }
}
