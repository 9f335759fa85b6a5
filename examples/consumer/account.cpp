// The smallest program over the second library: makes a store, imports a SUMO network and says what is in it.
//   account STORE NETWORK
#include <MoraTools/CompanionPlan.h>
#include <MoraTools/Failure.h>
#include <MoraTools/NetReader.h>
#include <MoraTools/NetworkImport.h>
#include <MoraTools/NewStore.h>
#include <MoraTools/StoreInfo.h>
#include <MoraTools/StoreSession.h>
#include <MoraTools/SumoCompanions.h>

#include <QCoreApplication>
#include <QTextStream>

using namespace moratools;

int main(int argc, char *argv[]) {
    const QCoreApplication app(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 3)
        return 2;
    try {
        const QString &path = arguments[1];
        makeStore(path, newestTemplate());
        const SumoNet net = readSumoNet(arguments[2]);
        const StoreSession store(path, Access::Write);
        importNetwork(store, net, planCompanions(net, {}), networkNameOf(arguments[2]));
        const StoreInfo info = takeStock(store, path);
        for (const NetworkInfo &network : info.networks) {
            for (const auto &[kind, rows] : network.rows) {
                if (kind == QLatin1String("links"))
                    QTextStream(stdout) << network.name << ": " << rows << " links\n";
            }
        }
    } catch (const Failure &failure) {
        // One sentence for the user.
        QTextStream(stderr) << failure.message() << '\n';
        return 1;
    }
    return 0;
}
