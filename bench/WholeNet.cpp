// Whole networks loaded and saved, beside what the SQLite engine itself takes to read and to write the same
// rows. Ratios come from one run, in which the works take turns.
//
//   bench_whole_net STORE [RUNS]          load and save, a line each: name, seconds, bare seconds, ratio
//   bench_whole_net load STORE            loads once: for a stopwatch outside
//   bench_whole_net links STORE           prints the number of links and the seconds of a load
//   bench_whole_net server STORE          saves into the PostgreSQL store that MORA_TEST_PG_* name
#include "BareEngine.h"
#include "Measure.h"

#include "model/NetContents.h"
#include "store/DBTools.h"

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <functional>

namespace {

void require(bool good, const char *what) {
    if (good)
        return;
    std::fprintf(stderr, "%s failed\n", what);
    for (const CallDbResult &failure : qAsConst(DBTools::mlCallDbResult))
        std::fprintf(stderr, "%s\n", qPrintable(failure.error));
    DBTools::logError(gDB);
    std::exit(1);
}

void open(const QString &path) {
    require(DBTools::openDatabase(gDB, path, true), "opening");
}

void load(NetContents &net) {
    require(DBTools::loadNet(gDB, 1, net), "loading");
}

void makeStore(const QString &path) {
    QFile::remove(path);
    require(QFile::copy(QStringLiteral(":/Resources/EmptyNet/EmptyNet_V6.0.0"), path) &&
                QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner),
            "making a store");
}

void report(const char *name, const std::vector<double> &times, const std::vector<double> &bare) {
    std::printf("%s %.3f %.3f %.2f\n", name, median(times), median(bare), median(times) / median(bare));
}

/// Loads beside scans, saves beside inserts. The tables of the bare works are those that the save fills.
void compare(const QString &path, int runs) {
    const QTemporaryDir folder;
    const QString saved = folder.filePath(QStringLiteral("saved.db"));
    const QString inserted = folder.filePath(QStringLiteral("inserted.db"));
    open(path);
    NetContents net;
    load(net);
    makeStore(saved);
    std::vector<double> loads, scans, saves, inserts;
    for (int run = 0; run < runs; ++run) {
        makeStore(saved);
        open(saved);
        saves.push_back(seconds([&] { require(DBTools::saveNet(gDB, 1, net, true), "saving"); }));
        gDB.close();
        BareEngine source(saved);
        makeStore(inserted);
        BareEngine target(inserted);
        const auto seeded = target.tables();
        auto tables = source.tables();
        tables.erase(std::remove_if(tables.begin(), tables.end(),
                                    [&seeded](const QByteArray &table) {
                                        return std::find(seeded.begin(), seeded.end(), table) != seeded.end();
                                    }),
                     tables.end());
        const auto rows = source.read(tables);
        inserts.push_back(seconds([&] { target.insert(rows); }));
    }
    net = NetContents();
    BareEngine source(path);
    const auto tables = source.tables();
    open(path);
    for (int run = 0; run < runs; ++run) {
        scans.push_back(seconds([&] { source.scan(tables); }));
        loads.push_back(seconds([&] { load(net); }));
        net = NetContents();
    }
    report("load", loads, scans);
    report("save", saves, inserts);
}

void saveToServer(const QString &path) {
    open(path);
    NetContents net;
    load(net);
    gDB.close();
    DBTools::mDbDriver = QStringLiteral("QPSQL");
    DBTools::mDbHost = qEnvironmentVariable("MORA_TEST_PG_HOST");
    DBTools::mDbPort = qEnvironmentVariableIntValue("MORA_TEST_PG_PORT");
    DBTools::mDbName = qEnvironmentVariable("MORA_BENCH_PG_NAME");
    DBTools::mDbUser = qEnvironmentVariable("MORA_TEST_PG_USER");
    DBTools::mDbPassword = qEnvironmentVariable("MORA_TEST_PG_PASSWORD");
    open(DBTools::mDbName);
    std::printf("%.3f\n", seconds([&] { require(DBTools::saveNet(gDB, 1, net, true), "saving"); }));
}

} // namespace

int main(int argc, char **argv) {
    const QCoreApplication application(argc, argv);
    QStringList arguments = QCoreApplication::arguments().mid(1);
    const QString work = arguments.size() > 1 ? arguments.first() : QString();
    if (arguments.isEmpty())
        return 2;
    if (work == QLatin1String("load") || work == QLatin1String("links")) {
        open(arguments.at(1));
        NetContents net;
        const double time = seconds([&net] { load(net); });
        if (work == QLatin1String("links"))
            std::printf("%zu %.3f\n", net.links.size(), time);
    } else if (work == QLatin1String("server")) {
        saveToServer(arguments.at(1));
    } else {
        compare(arguments.first(), arguments.value(1, QStringLiteral("5")).toInt());
    }
    gDB.close();
}
