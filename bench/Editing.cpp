// What changing a network costs. Works take turns in one run; the store is a copy of the one that is given.
//
//   bench_editing STORE [RUNS]   one column of all links beside bare statements (seconds, bare seconds, ratio);
//                                one link, and ten with a vertex each, also as changes of the network that is
//                                loaded, beside ten bare statements (milliseconds; most is the disk's at the commit)
#include "BareEngine.h"
#include "Measure.h"

#include "model/NetContents.h"
#include "store/DBTools.h"
#include "store/StoredNet.h"

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
    DBTools::logError(gDB);
    std::exit(1);
}

} // namespace

int main(int argc, char **argv) {
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments().mid(1);
    if (arguments.isEmpty())
        return 2;
    const int runs = arguments.value(1, QStringLiteral("5")).toInt();
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("edited.db"));
    require(QFile::copy(arguments.first(), path), "copying");
    require(DBTools::openDatabase(gDB, path, true), "opening");
    NetContents contents;
    require(DBTools::loadNet(gDB, 1, contents), "loading");
    StoredNet net(gDB, 1);
    QList<Link *> links;
    std::vector<std::pair<double, long long>> values;
    for (const auto &link : contents.links) {
        links.append(link.get());
        values.emplace_back(0.0, link->linkID);
    }

    std::vector<double> library, bare, one, ten, changes, bareTen;
    for (int run = 0; run < runs; ++run) {
        for (Link *link : qAsConst(links))
            link->limitSpeed = 30.5 + run;
        for (auto &value : values)
            value.first = 60.5 + run;
        library.push_back(seconds(
            [&] { require(net.updateFields({QStringLiteral("limitSpeed")}, links), "writing a column"); }));
        BareEngine engine(path);
        bare.push_back(seconds(
            [&] { engine.update("update Link set limitSpeed = ? where NetId = 1 and linkID = ?", values); }));
    }
    std::printf("updateFields of %d links %.3f %.3f %.2f\n", int(links.size()), median(library), median(bare),
                median(library) / median(bare));

    require(net.updateFields({QStringLiteral("limitSpeed")}, links), "writing a column");
    for (int run = 0; run < std::max(runs, 9); ++run) {
        links[run]->limitSpeed += 1;
        one.push_back(1000 * seconds([&] { require(net.update(*links[run]), "changing a link"); }));
        QList<Link *> some;
        for (int i = 0; i < 10; ++i) {
            Link *link = links[(run * 10 + i) * 7 % int(links.size())];
            link->limitSpeed += 2;
            link->mlVertex.first()->z += 1;
            some.append(link);
        }
        ten.push_back(1000 * seconds([&] { require(net.update(some), "changing ten links"); }));
        for (Link *link : qAsConst(some)) {
            contents.edit(*link).limitSpeed += 1;
            link->mlVertex.last()->z += 1;
        }
        changes.push_back(1000 * seconds([&] { require(net.saveChanges(contents), "saving changes"); }));
        BareEngine engine(path);
        const std::vector<std::pair<double, long long>> same(values.begin(), values.begin() + 10);
        bareTen.push_back(1000 * seconds([&] {
                              engine.update("update Link set minSpeed = ? where NetId = 1 and linkID = ?",
                                            same);
                          }));
    }
    std::printf(
        "update of a link %.2f ms, of ten %.2f ms, saveChanges of ten %.2f ms, ten bare statements %.2f ms\n",
        median(one), median(ten), median(changes), median(bareTen));
    gDB.close();
}
