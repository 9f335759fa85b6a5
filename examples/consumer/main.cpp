// The smallest host: makes a store from the carried template, writes one link and reads it back.
//   consumer STORE
#include <MoraStore/DBTools.h>
#include <MoraStore/DBTools_V6.h>
#include <MoraStore/Link.h>
#include <MoraStore/Net.h>
#include <MoraStore/StoredNet.h>

#include <QCoreApplication>
#include <QFile>
#include <QTextStream>

#include <memory>

namespace {

bool drawIds(Link &link) {
    bool drawn = DBTools::getIDByTableName(gDB, QStringLiteral("Link"), link.linkID);
    for (Vertex *vertex : qAsConst(link.mlVertex))
        drawn = drawn && DBTools::getIDByTableName(gDB, QStringLiteral("Vertex"), vertex->vertexID);
    for (Node *node : {link.mpStartNode, link.mpEndNode})
        drawn = drawn && DBTools::getIDByTableName(gDB, QStringLiteral("Node"), node->nodeID);
    return drawn;
}

// A link owns its vertices, nodes and lanes.
std::unique_ptr<Link> makeLink() {
    auto link = std::make_unique<Link>();
    link->linkName = QStringLiteral("Harbour Street");
    link->laneNumber = 2;
    link->laneWidth = 3.5;
    for (const double x : {0.0, 120.0}) {
        auto *vertex = new Vertex;
        vertex->x = x;
        link->mlVertex.append(vertex);
    }
    link->mpStartNode = new Node;
    link->mpEndNode = new Node;
    if (!drawIds(*link))
        return nullptr;
    link->mpStartNode->mpVertex = link->mlVertex.first();
    link->mpEndNode->mpVertex = link->mlVertex.last();
    link->calcuLength();
    link->createLanes();
    return link;
}

int fail(const QString &what) {
    QTextStream(stderr) << what << '\n';
    DBTools::logError(gDB);
    return 1;
}

} // namespace

int main(int argc, char *argv[]) {
    const QCoreApplication app(argc, argv);
    if (argc != 2)
        return fail(QStringLiteral("Usage: consumer STORE"));
    const QString path = QFile::decodeName(argv[1]);

    // The templates are resources of the library. A copied resource is read-only.
    if (!QFile::copy(QStringLiteral(":/Resources/EmptyNet/EmptyNet_V6.0.0"), path) ||
        !QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner))
        return fail(path + QStringLiteral(" exists or cannot be written."));
    if (!DBTools::openDatabase(gDB, path, true))
        return fail(path + QStringLiteral(" cannot be opened."));

    const long netId = DBTools::selectMaxNetId(gDB) + 1;
    if (!DBTools_V6::insertNet(gDB, netId, QStringLiteral("Harbour"), {}, {}, {}, {}, true, true) ||
        !DBTools::selectNetById(gDB, netId))
        return fail(QStringLiteral("The network was not written."));

    long linkId = 0;
    {
        const std::unique_ptr<Link> link = makeLink();
        if (!link || !DBTools::insertLink(gDB, netId, link.get(), true))
            return fail(QStringLiteral("The link was not written."));
        linkId = link->linkID;
    }

    const Owned<Link> link = StoredNet(gDB, netId).read<Link>(linkId);
    if (!link)
        return fail(QStringLiteral("The link did not come back."));
    QTextStream(stdout) << link->linkName << ": " << link->length << " m, " << link->mlLane.size()
                        << " lanes, " << link->width() << " m wide\n";
    return 0;
}
