// An edit with undo and redo: a road is bent and gets a lane more, and all of it is taken back.
//   undo STORE LINK [STEPS]    STEPS: how many of the six, all by default
#include <MoraStore/DBTools.h>
#include <MoraStore/FailureScope.h>
#include <MoraStore/LaneGeometry.h>
#include <MoraStore/NetContents.h>
#include <MoraStore/StoredNet.h>
#include <MoraStore/Stores.h>
#include <MoraStore/Transaction.h>
#include <MoraTools/Failure.h>
#include <MoraTools/StoreSession.h>
#include <MoraTools/UndoList.h>

#include <QCoreApplication>
#include <QTextStream>

#include <functional>
#include <utility>

using namespace moratools;

namespace {

// The link, and the paths that lead to it and away; all of it or nothing.
bool write(StoredNet &net, Link &link) {
    Transaction all(net.db());
    const auto users = net.whatRefersTo<Link>(link.linkID);
    if (!users || !updateGeometry(link) || !net.update(link))
        return false;
    for (const NetObject &user : *users) {
        if (user.table != QLatin1String("Connector"))
            continue;
        const auto connector = net.read<Connector>(user.id);
        if (!connector || !curve(*connector) || !net.update(*connector))
            return false;
    }
    return all.commit();
}

// A change as a step that can be taken back, whatever it writes.
bool change(UndoList &steps, StoredNet &net, long linkId, const char *name, void (*how)(Link &)) {
    steps.begin();
    const auto link = net.read<Link>(linkId);
    if (link)
        how(*link);
    if (link && write(net, *link))
        return steps.end(QString::fromUtf8(name));
    steps.cancel();
    return false;
}

// What the store has.
void print(const char *when, StoredNet &net, long linkId) {
    if (const auto link = net.read<Link>(linkId))
        QTextStream(stdout) << when << ": " << link->length << " m, " << link->mlLane.size() << " lanes, "
                            << link->width() << " m wide\n";
}

void bend(Link &link) {
    link.mlVertex.last()->y += 10;
}

// A lane more on the left, like the one beside it.
void widen(Link &link) {
    auto lane = link.mlLane.last()->clone();
    lane->laneID = 0; // drawn when it is written
    link.mlLane.append(lane.release());
    link.laneNumber += 1;
}

void run(const QString &path, long linkId, int left) {
    if (!stores::open(path))
        throw Failure(FailureScope::sinceOpening(gDB).text());
    const FailureScope failures(gDB);
    StoredNet net(gDB, gNet.netId);
    if (!net.read<Link>(linkId))
        throw Failure(failures.isEmpty() ? QStringLiteral("There is no such link.") : failures.text());
    print("before", net, linkId);
    // What is read from here on is what the store has after each step: nothing is kept in memory.
    const StoreSession session = StoreSession::ofProcess(path);
    UndoList steps(session, gNet.netId);
    const std::pair<const char *, std::function<bool()>> actions[] = {
        {"bent", [&] { return change(steps, net, linkId, "bend", bend); }},
        {"wider", [&] { return change(steps, net, linkId, "widen", widen); }},
        {"undone", [&] { return !steps.undo().empty(); }},
        {"redone", [&] { return !steps.redo().empty(); }},
        {"undone", [&] { return !steps.undo().empty(); }},
        {"undone", [&] { return !steps.undo().empty(); }},
    };
    for (const auto &[name, act] : actions) {
        if (left-- == 0)
            break;
        if (!act())
            throw Failure(failures.text());
        print(name, net, linkId);
    }
}

} // namespace

int main(int argc, char *argv[]) {
    const QCoreApplication app(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    try {
        run(arguments.value(1), arguments.value(2).toLong(), arguments.value(3, QStringLiteral("6")).toInt());
    } catch (const Failure &failure) {
        QTextStream(stderr) << failure.message() << '\n';
        return 1;
    }
    return 0;
}
