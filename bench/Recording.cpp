// What it costs to record changes, and to take them back. The store is a copy of the one that is given; one on a
// server is changed itself, and what was changed is taken back.
//
//   bench_recording STORE [RUNS]   an edit (a link and one of its vertices) without a recorder, in the middle of a
//                                  recording, and as one of its own; a column of all links without and with one;
//                                  a step back; a comparison with the store as it was (milliseconds)
#include "Measure.h"

#include "model/Link.h"
#include "store/StoredNet.h"
#include "tools/differences/NetworkDiff.h"
#include "tools/differences/UndoList.h"
#include "tools/reports/Failure.h"
#include "tools/rows/StoreReader.h"
#include "tools/session/StoreSession.h"

#include <QCoreApplication>
#include <QFile>
#include <QSqlQuery>
#include <QTemporaryDir>

#include <cstdio>
#include <cstdlib>
#include <memory>

using namespace moratools;

namespace {

void require(bool good, const char *what) {
    if (good)
        return;
    std::fprintf(stderr, "%s failed\n", what);
    std::exit(1);
}

double milliseconds(const std::function<void()> &work) {
    return 1000 * seconds(work);
}

void measure(const StoreAddress &address, const StoreAddress &original, int runs) {
    const StoreSession session(address, Access::Write);
    const StoreReader::Network network = StoreReader(address).networks().value(0);
    StoredNet net(session.db(), network.id);
    QList<long> ids;
    QSqlQuery query(QStringLiteral("select linkID from Link order by linkID limit 10000"), session.db());
    while (query.next())
        ids.append(long(query.value(0).toLongLong()));
    query.finish();
    int edits = 0;
    const auto edit = [&] {
        const auto link = net.read<Link>(ids[edits++ * 7 % ids.size()]);
        require(link != nullptr, "reading a link");
        link->limitSpeed += 1;
        link->mlVertex.first()->x += 1;
        require(net.update(*link), "changing a link");
    };
    std::vector<Owned<Link>> read;
    QList<Link *> links;
    for (const long id : qAsConst(ids)) {
        read.push_back(net.read<Link>(id));
        links.append(read.back().get());
    }
    const auto editAll = [&] {
        for (Link *link : qAsConst(links))
            link->minSpeed += 1;
        require(net.updateFields({QStringLiteral("minSpeed")}, links), "writing a column");
    };

    std::vector<double> without, within, own, allWithout, allWith, back;
    std::unique_ptr<UndoList> steps;
    const double making = milliseconds([&] { steps = std::make_unique<UndoList>(session, network.id); });
    for (int run = 0; run < runs; ++run) {
        steps->begin();
        within.push_back(milliseconds(edit));
        require(steps->end(QStringLiteral("edit")), "recording");
        own.push_back(milliseconds([&] {
            steps->begin();
            edit();
            require(steps->end(QStringLiteral("edit")), "recording");
        }));
        steps->begin();
        allWith.push_back(milliseconds(editAll));
        require(steps->end(QStringLiteral("all")), "recording");
    }
    const double comparing = milliseconds([&] {
        const StoreReader before(original);
        const StoreReader after(address);
        qint64 changes = 0;
        diffNetworks(before, before.networks().value(0), after, network,
                     [&](const RowChange &) { ++changes; });
    });
    while (steps->canUndo()) {
        const bool isEdit = steps->undoName() == QLatin1String("edit");
        const double taken = milliseconds([&] { steps->undo(); });
        if (isEdit)
            back.push_back(taken);
    }
    steps.reset();
    for (int run = 0; run < runs; ++run) {
        without.push_back(milliseconds(edit));
        allWithout.push_back(milliseconds(editAll));
    }
    std::printf("an edit %.2f, while recorded %.2f, as a recording of its own %.2f, taken back %.2f\n",
                median(without), median(within), median(own), median(back));
    std::printf("a column of %d links %.1f, while recorded %.1f\n", links.size(), median(allWithout),
                median(allWith));
    std::printf("making the recorder %.1f, comparing the network %.0f\n", making, comparing);
}

} // namespace

int main(int argc, char **argv) {
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments().mid(1);
    if (arguments.isEmpty())
        return 2;
    try {
        const StoreAddress original(arguments.first());
        const QTemporaryDir folder;
        const QString copy = folder.filePath(QStringLiteral("recorded.db"));
        if (!original.isServer())
            require(QFile::copy(original.path(), copy), "copying");
        measure(original.isServer() ? original : StoreAddress(copy), original,
                arguments.value(1, QStringLiteral("9")).toInt());
    } catch (const Failure &failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        return 1;
    }
    return 0;
}
