#include "model/AppVersionManager.h"
#include "tests/support/Places.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

const QString kHistory =
    QStringLiteral("# Changes\r\n\n## 1.10 (2026-03-01)\n\n- 路网 of *several* networks\n  and more\n"
                   "- b\n\n## 1.9.0 (2026-03-01)\n- c\n\n## 0.9 (2025-12-31)\n\n- d\n");

QByteArray contentOf(const QString &path) {
    QFile file(path);
    file.open(QIODevice::ReadOnly);
    return file.readAll();
}

TEST(AppVersionManagerTest, OrdersByNumberAndWritesItselfOut) {
    QString error;
    const auto manager = AppVersionManager::fromMarkdown(kHistory, error);
    ASSERT_TRUE(manager) << qPrintable(error);
    EXPECT_EQ(manager->newest().number, QVersionNumber(1, 10));
    EXPECT_EQ(manager->newest().notes.value(0), QStringLiteral("路网 of *several* networks and more"));
    ASSERT_NE(manager->find({1, 9}), nullptr);
    EXPECT_EQ(manager->find({1, 9})->notes, QStringList(QStringLiteral("c")));
    EXPECT_EQ(manager->find({1, 1}), nullptr);
    EXPECT_EQ(manager->newerThan({1, 9}).size(), 1);
    EXPECT_EQ(manager->newerThan({1, 2, 7}).size(), 2) << "1.10 is newer than 1.2.7";
    EXPECT_EQ(manager->newerThan({1, 10, 0}).size(), 0);

    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("历史.md"));
    ASSERT_TRUE(manager->writeMarkdown(path, error));
    const auto read = AppVersionManager::fromMarkdown(QString::fromUtf8(contentOf(path)), error);
    ASSERT_TRUE(read) << qPrintable(error);
    EXPECT_EQ(AppVersionManager::toJson(read->versions()), AppVersionManager::toJson(manager->versions()));
    ASSERT_TRUE(manager->writeJson(path, error));
    const QJsonObject third = QJsonDocument::fromJson(contentOf(path)).array().at(2).toObject();
    EXPECT_EQ(third.value(QLatin1String("version")).toString(), QStringLiteral("0.9"));
    EXPECT_EQ(third.value(QLatin1String("date")).toString(), QStringLiteral("2025-12-31"));
    EXPECT_FALSE(manager->writeJson(folder.filePath(QStringLiteral("none/a.json")), error));
    EXPECT_TRUE(error.contains(QLatin1String("a.json"))) << qPrintable(error);
}

TEST(AppVersionManagerTest, RefusesWhatIsMalformedOrOutOfOrder) {
    const struct {
        const char *text;
        const char *error;
    } cases[] = {
        {"", "line 1: there is no version"},
        {"## 1.0 (2026-01-01)\n- a", "line 1: the title"},
        {"# Changes\n# Changes\n", "line 2: a second title"},
        {"# C\n## 1.0\n- a", "line 2: the heading of a version"},
        {"# C\n## 1.0 (2026-02-30)\n- a", "line 2: the heading of a version"},
        {"# C\n## 1.x (2026-01-01)\n- a", "line 2: the heading of a version"},
        {"# C\n- a\n## 1.0 (2026-01-01)", "line 2: this is no heading"},
        {"# C\n## 1.0 (2026-01-01)\n- a\n\n  b", "line 5: this is no heading"},
        {"# C\n## 1.0 (2026-01-01)\ntext", "line 3: this is no heading"},
        {"# C\n## 1.0 (2026-01-01)\n- \n  b", "line 3: a note without text"},
        {"# C\n## 1.0 (2026-01-01)\n", "line 3: version 1.0 has no notes"},
        {"# C\n## 1.1 (2026-01-01)\n## 1.0 (2026-01-01)\n- a", "line 3: version 1.1 has no notes"},
        {"# C\n## 1.9 (2026-01-01)\n- a\n## 1.10 (2026-01-01)\n- b",
         "line 4: version 1.10 must stand before 1.9"},
        {"# C\n## 1.0 (2026-01-01)\n- a\n## 1.0.0 (2026-01-01)\n- b",
         "line 4: version 1.0.0 must stand before 1.0"},
        {"# C\n## 1.1 (2026-01-01)\n- a\n## 1.0 (2026-01-02)\n- b", "line 4: version 1.0 is dated after"},
    };
    for (const auto &c : cases) {
        QString error;
        EXPECT_FALSE(AppVersionManager::fromMarkdown(QString::fromUtf8(c.text), error)) << c.text;
        EXPECT_TRUE(error.startsWith(QLatin1String(c.error))) << c.text << "\n" << qPrintable(error);
    }
}

TEST(AppVersionManagerTest, CarriesTheChangelogOfTheTree) {
    QString error;
    const QByteArray text = contentOf(sourceFolder() + QStringLiteral("/CHANGELOG.md"));
    const auto tree = AppVersionManager::fromMarkdown(QString::fromUtf8(text), error);
    ASSERT_TRUE(tree) << qPrintable(error);
    EXPECT_EQ(AppVersionManager::toMarkdown(AppVersionManager::ofLibrary().versions()),
              AppVersionManager::toMarkdown(tree->versions()));
}

} // namespace
