#include "model/Net.h"
#include "tests/support/StatementList.h"

#include <type_traits>

namespace {

constexpr long kNet = StatementList::kNet;

template <class Tools>
void record(StatementList &list) {
    if constexpr (std::is_same_v<Tools, DBTools>) {
        list.addWrite("insertNet", [](bool flag) {
            DBTools::insertNet(gDB, 5, "O'Brien", {1, 2}, "test", "", QJsonObject(), flag);
        });
        list.add("insertNet with a name that is taken", [] {
            DBTools::insertNet(gDB, 6, gNet.name, {1, 2}, "test", "", QString(), true);
        });
        gNet.name = QStringLiteral("another");
        gNet.netId = 7;
        list.addWrite("insertNet from gNet", [](bool flag) { DBTools::insertNet(gDB, flag); });
        list.addWrite("updateNet", [](bool flag) { DBTools::updateNet(gDB, kNet, flag); });
        list.add("selectNetById", [] { DBTools::selectNetById(gDB, kNet); });
        list.add("selectNetIdByName", [] { DBTools::selectNetIdByName(gDB, "O'Brien"); });
        list.add("selectNetIdByName without a name", [] { DBTools::selectNetIdByName(gDB, ""); });
        list.add("selectNetId", [] { DBTools::selectNetId(gDB, kNet); });
        list.add("selectMaxNetId", [] { DBTools::selectMaxNetId(gDB); });
        list.add("selectNets", [] { DBTools::selectNets(gDB); });
        list.add("selectBackgroundMap", [] { DBTools::selectBackgroundMap(gDB, kNet); });
    } else {
        list.addWrite("DBTools_V6::insertNet", [](bool flag) {
            Tools::insertNet(gDB, 5, "O'Brien", {1, 2}, "test", "", "{}", true, flag);
        });
        list.addWrite("DBTools_V6::updateNet", [](bool flag) {
            Tools::updateNet(gDB, 5, "b", "", "test", "", 1, 2, "caption", "{}", false, flag);
        });
    }
    list.addWrite("removeNetData", [](bool flag) { Tools::removeNetData(gDB, kNet, flag); });
}

const StatementFamily kNetworks("Networks", record<DBTools>, record<DBTools_V6>);

} // namespace
