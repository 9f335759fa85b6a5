#include "model/ChangeLaneModelParam.h"
#include "model/Configuration.h"
#include "model/DriveFollowedModelParam.h"
#include "model/SimulateConfiguration.h"
#include "tests/support/StatementList.h"

#include <QSqlQuery>
#include <gtest/gtest.h>

namespace {

constexpr long kNet = StatementList::kNet;

template <class Tools>
void recordDriverModels(StatementList &list) {
    DriveFollowedModelParam following;
    DriveFollowedModelParam other;
    list.addWrite("saveDriveFollowedModelParam",
                  [&](bool flag) { Tools::saveDriveFollowedModelParam(gDB, kNet, following, flag); });
    list.add("selectDriveFollowedModelParam",
             [&] { Tools::selectDriveFollowedModelParam(gDB, kNet, following, other); });
    QList<ChangeLaneModelParam> params = {ChangeLaneModelParam(1), ChangeLaneModelParam(2)};
    list.addWrite("saveChangeLaneParam",
                  [&](bool flag) { Tools::saveChangeLaneParam(gDB, kNet, params, flag); });
    list.add("selectChangeLaneParam", [&] { Tools::selectChangeLaneParam(gDB, kNet, params); });
}

template <class Tools>
void record(StatementList &list) {
    ASSERT_TRUE(QSqlQuery(gDB).exec("delete from SimulateConfiguration")) << "whatever the template brings";
    SimulateConfiguration simulation;
    const auto saveSimulation = [&](bool flag) { Tools::saveSimuConfiguration(gDB, kNet, simulation, flag); };
    list.addWrite("saveSimuConfiguration", saveSimulation);
    list.addWrite("saveSimuConfiguration again", saveSimulation);
    list.add("selectSimuConfiguration", [&] { Tools::selectSimuConfiguration(gDB, kNet, simulation); });
    list.addWrite("saveConfiguration", [](bool flag) { Tools::saveConfiguration(gDB, kNet, flag); });
    list.add("selectConfiguration", [] {
        Configuration scene;
        Tools::selectConfiguration(gDB, kNet, scene);
    });
    list.addWrite("updateConfigIfShowGrid", [](bool flag) { Tools::updateConfigIfShowGrid(gDB, flag); });
    list.addWrite("updateConfigIfShowBackgroundMap",
                  [](bool flag) { Tools::updateConfigIfShowBackgroundMap(gDB, flag); });
    recordDriverModels<Tools>(list);
}

const StatementFamily kConfigurations("Configurations", record<DBTools>, record<DBTools_V6>);

} // namespace
