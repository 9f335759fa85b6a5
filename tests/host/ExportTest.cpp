#include "tests/host/Morastore.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QStandardPaths>

// Networks go out of a store for SUMO. What comes out is looked at with the comparison of the tests and with SUMO itself.

namespace {

bool isInstalled(const char *program) {
    return !QStandardPaths::findExecutable(QLatin1String(program)).isEmpty();
}

class Export : public Morastore {
protected:
    /// A store with the example and what belongs to it.
    QString exampleStore() const {
        const QString folder = sourceFolder() + QStringLiteral("/examples/crossing/");
        const Outcome outcome =
            run({QStringLiteral("import"), newStore(), kExample, QStringLiteral("--additional"),
                 folder + QStringLiteral("crossing.add.xml"), QStringLiteral("--routes"),
                 folder + QStringLiteral("crossing.rou.xml")});
        EXPECT_EQ(outcome.exitCode, 0) << outcome.err.toStdString();
        return file(QStringLiteral("store.mora"));
    }

    Outcome exported(const QString &store, const QString &folder, const QStringList &options = {}) const {
        return run(QStringList{QStringLiteral("export"), store, file(folder), QStringLiteral("--sumo")} +
                   options);
    }

    /// By kind how many differ between two networks, as tests/netcompare sees it.
    static QMap<QString, int> differences(const QString &a, const QString &b) {
        const Outcome outcome = start(QStandardPaths::findExecutable(QStringLiteral("python3")),
                                      {sourceFolder() + QStringLiteral("/tests/netcompare/compare_nets.py"),
                                       QStringLiteral("--json"), a, b});
        EXPECT_LT(outcome.exitCode, 2) << outcome.err.toStdString();
        const QJsonObject kinds = QJsonDocument::fromJson(outcome.out.toUtf8()).object();
        EXPECT_GT(kinds.size(), 30);
        QMap<QString, int> found;
        for (auto kind = kinds.begin(); kind != kinds.end(); ++kind) {
            if (const int count = kind->toObject().value(QStringLiteral("differing")).toInt())
                found.insert(kind.key(), count);
        }
        return found;
    }
};

TEST_F(Export, WhatNetconvertMakesOfItIsTheNetworkThatWentIn) {
    if (!isInstalled("netconvert") || !isInstalled("python3"))
        GTEST_SKIP() << "no SUMO, or no Python";
    ASSERT_EQ(run({QStringLiteral("import"), newStore(), kExample}).exitCode, 0);
    const Outcome outcome =
        exported(file(QStringLiteral("store.mora")), QStringLiteral("out"), {QStringLiteral("--rebuild")});
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err.toStdString();
    const QMap<QString, int> found = differences(kExample, file(QStringLiteral("out/crossing.net.xml")));
    for (const QString &kind : found.keys()) {
        static const QStringList outside{QStringLiteral("edge"),
                                         QStringLiteral("lane"),
                                         QStringLiteral("type"),
                                         QStringLiteral("location"),
                                         QStringLiteral("net"),
                                         QStringLiteral("connections"),
                                         QStringLiteral("connection signals"),
                                         QStringLiteral("junction shapes"),
                                         QStringLiteral("junctions"),
                                         QStringLiteral("programmes")};
        for (const QString &each : outside)
            EXPECT_FALSE(kind.startsWith(each)) << kind.toStdString();
    }
}

TEST_F(Export, AFolderThatIsNotEmptyStaysAsItIs) {
    const QString store = exampleStore();
    QDir(mFolder.path()).mkdir(QStringLiteral("full"));
    write(QStringLiteral("full/.hidden"), "mine");
    write(QStringLiteral("file"), "mine");
    expectRefusal([&] { return exported(store, QStringLiteral("full")); }, QStringLiteral("is not empty"));
    expectRefusal([&] { return exported(store, QStringLiteral("file")); }, QStringLiteral("is a file"));
    expectRefusal([&] { return exported(store, QStringLiteral("none/out")); },
                  QStringLiteral("cannot be made"));
    EXPECT_EQ(QDir(file(QStringLiteral("full")))
                  .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot)
                  .size(),
              1);
    // An empty one is taken, and nothing is left beside it.
    QDir(mFolder.path()).mkdir(QStringLiteral("empty"));
    EXPECT_EQ(exported(store, QStringLiteral("empty"), {QStringLiteral("--plain-only")}).exitCode, 0);
    EXPECT_EQ(QDir(mFolder.path()).entryList(QDir::Dirs | QDir::NoDotAndDotDot),
              QStringList({QStringLiteral("empty"), QStringLiteral("full")}));
}

} // namespace
