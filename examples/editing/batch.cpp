// A batch: every limit of 60 becomes 50, and every lane is a quarter of a metre wider.
//   batch STORE
#include <MoraStore/DBTools.h>
#include <MoraStore/FailureScope.h>
#include <MoraStore/LaneGeometry.h>
#include <MoraStore/NetContents.h>
#include <MoraStore/StoredNet.h>
#include <MoraStore/Stores.h>

#include <QCoreApplication>
#include <QTextStream>

namespace {

bool widen(Link &link) {
    for (Lane *lane : qAsConst(link.mlLane))
        lane->width += 0.25;
    link.laneWidth += 0.25;
    return updateGeometry(link);
}

bool changeAll(NetContents &net) {
    int slower = 0;
    for (const auto &link : net.links) {
        if (!widen(net.edit(*link)))
            return false;
        if (link->limitSpeed == 60) {
            link->limitSpeed = 50;
            ++slower;
        }
    }
    for (const auto &connector : net.connectors) {
        if (!curve(net.edit(*connector)))
            return false;
    }
    QTextStream(stdout) << slower << " links are slower, " << net.links.size() << " have wider lanes\n";
    return true;
}

} // namespace

int main(int argc, char *argv[]) {
    const QCoreApplication app(argc, argv);
    NetContents net;
    if (stores::open(QCoreApplication::arguments().value(1)) && DBTools::loadNet(gDB, gNet.netId, net) &&
        changeAll(net) && StoredNet(gDB, gNet.netId).saveChanges(net))
        return 0;
    QTextStream(stderr) << FailureScope::sinceOpening(gDB).text() << '\n';
    return 1;
}
