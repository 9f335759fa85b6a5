// An edit with undo and redo: a road is bent and gets a lane more, and all of it is taken back.
//   undo STORE LINK [STEPS]    STEPS: how many of the six, all by default
#include <MoraStore/DBTools.h>
#include <MoraStore/FailureScope.h>
#include <MoraStore/LaneGeometry.h>
#include <MoraStore/NetContents.h>
#include <MoraStore/StoredNet.h>
#include <MoraStore/Stores.h>
#include <MoraStore/Transaction.h>

#include <QCoreApplication>
#include <QTextStream>

#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace {

// Changes links in the store, and keeps what they were.
class Editor {
public:
    explicit Editor(StoredNet &net) : mNet(net) {}

    bool change(long linkId, const std::function<void(Link &)> &how) {
        const auto link = mNet.read<Link>(linkId);
        if (!link)
            return false;
        auto before = link->clone();
        how(*link);
        if (!write(*link))
            return false;
        mDone.push_back(std::move(before));
        mUndone.clear();
        return true;
    }
    bool undo() { return step(mDone, mUndone); }
    bool redo() { return step(mUndone, mDone); }

private:
    using States = std::vector<std::unique_ptr<Link>>;

    bool step(States &from, States &to) {
        const auto now = from.empty() ? nullptr : mNet.read<Link>(from.back()->linkID);
        if (!now || !write(*from.back()))
            return false;
        to.push_back(now->clone());
        from.pop_back();
        return true;
    }

    // The link, and the paths that lead to it and away; all of it or nothing.
    bool write(Link &link) {
        Transaction all(mNet.db());
        const auto users = mNet.whatRefersTo<Link>(link.linkID);
        if (!users || !updateGeometry(link) || !mNet.update(link))
            return false;
        for (const NetObject &user : *users) {
            if (user.table != QLatin1String("Connector"))
                continue;
            const auto connector = mNet.read<Connector>(user.id);
            if (!connector || !curve(*connector) || !mNet.update(*connector))
                return false;
        }
        return all.commit();
    }

    StoredNet &mNet;
    States mDone;
    States mUndone;
};

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

} // namespace

int main(int argc, char *argv[]) {
    const QCoreApplication app(argc, argv);
    const QString path = QCoreApplication::arguments().value(1);
    const long linkId = QCoreApplication::arguments().value(2).toLong();
    const auto fail = [](const QString &why) {
        QTextStream(stderr) << why << '\n';
        return 1;
    };
    if (!stores::open(path))
        return fail(FailureScope::sinceOpening(gDB).text());
    const FailureScope failures(gDB);
    StoredNet net(gDB, gNet.netId);
    if (!net.read<Link>(linkId))
        return fail(failures.isEmpty() ? QStringLiteral("There is no such link.") : failures.text());
    print("before", net, linkId);
    Editor editor(net);
    const std::pair<const char *, std::function<bool()>> steps[] = {
        {"bent", [&] { return editor.change(linkId, bend); }},
        {"wider", [&] { return editor.change(linkId, widen); }},
        {"undone", [&] { return editor.undo(); }},
        {"redone", [&] { return editor.redo(); }},
        {"undone", [&] { return editor.undo(); }},
        {"undone", [&] { return editor.undo(); }},
    };
    int left = QCoreApplication::arguments().value(3, QStringLiteral("6")).toInt();
    for (const auto &[name, step] : steps) {
        if (left-- == 0)
            break;
        if (!step())
            return fail(failures.text());
        print(name, net, linkId);
    }
    return 0;
}
