// The smallest host: makes a store from the carried template, writes one link and reads it back.
//   consumer STORE
#include <MoraStore/DBTools.h>
#include <MoraStore/FailureScope.h>
#include <MoraStore/Link.h>
#include <MoraStore/StoredNet.h>
#include <MoraStore/Stores.h>

#include <QCoreApplication>
#include <QFile>
#include <QTextStream>

namespace {

// A link owns its vertices, nodes and lanes.
void fill(Link &link) {
    link.linkName = QStringLiteral("Harbour Street");
    link.laneNumber = 2;
    link.laneWidth = 3.5;
    for (const double x : {0.0, 120.0})
        link.mlVertex.append(new Vertex{0, x, 0, 0});
    link.mpStartNode = new Node{0, {}, link.mlVertex.first()};
    link.mpEndNode = new Node{0, {}, link.mlVertex.last()};
    link.calcuLength();
    link.createLanes();
}

int fail() {
    QTextStream(stderr) << FailureScope::sinceOpening(gDB).text() << '\n';
    return 1;
}

} // namespace

int main(int argc, char *argv[]) {
    const QCoreApplication app(argc, argv);
    if (argc != 2) {
        QTextStream(stderr) << "Usage: consumer STORE\n";
        return 2;
    }
    const QString path = QFile::decodeName(argv[1]);
    NetRecord record;
    record.name = QStringLiteral("Harbour");
    if (!stores::create(path) || !stores::open(path) || !stores::addNetwork(gDB, record))
        return fail();

    StoredNet net(gDB, gNet.netId);
    Link made;
    fill(made);
    if (!net.insert(made))
        return fail();

    const Owned<Link> link = net.read<Link>(made.linkID);
    if (!link)
        return fail();
    QTextStream(stdout) << link->linkName << ": " << link->length << " m, " << link->mlLane.size()
                        << " lanes, " << link->width() << " m wide\n";
    return 0;
}
