#include "store/families/SceneConfigurations.h"

#include "model/Description.h"
#include "store/bulk/NetLoad.h"
#include "store/bulk/NetSave.h"
#include "store/core/Columns.h"
#include "store/core/OperationTransaction.h"
#include "store/core/Query.h"

namespace sceneconfigurations {

namespace {

constexpr Sql kDelete = {"delete from Configuration", "delete from Configuration where NetId = %1"};
constexpr Sql kInsert = {
    "insert into Configuration(sceneWidth, sceneHeight, scale, showGrid, showBackgroundMap, backgroundMap, saveDate) values(:sceneWidth, :sceneHeight, :scale, :showGrid, :showBackgroundMap, :backgroundMap, :saveDate)",
    "insert into Configuration(NetId, sceneWidth, sceneHeight, scale, showGrid, showBackgroundMap, backgroundMap, saveDate) values(:NetId, :sceneWidth, :sceneHeight, :scale, :showGrid, :showBackgroundMap, :backgroundMap, :saveDate)"};
constexpr Sql kSelect = {"select * from Configuration", "select * from Configuration where NetId = %0"};

// Without a condition: the switches are the program's, so all networks of a store show alike.
constexpr const char *kUpdateShowGrid = "update Configuration set showGrid = :showGrid";
constexpr const char *kUpdateShowBackgroundMap =
    "update Configuration set showBackgroundMap = :showBackgroundMap";

constexpr std::tuple kColumns = {
    Column{":sceneWidth", &Configuration::sceneWidth},
    Column{":sceneHeight", &Configuration::sceneHeight},
    Column{":scale", &Configuration::scale},
    Column{":showGrid", &Configuration::showGrid},
    Column{":showBackgroundMap", &Configuration::showBackgroundMap},
};

/// The column keeps a date and time in stores of one network and a date in generation 6. A date that was
/// never set is NULL.
QVariant saveDateOf(const Store &store, const Configuration &configuration) {
    if (store.hasSeveralNets())
        return configuration.saveDate.date();
    return configuration.saveDate;
}

template <class Row>
void readRow(Row &row, Configuration &configuration) {
    readAll(row, kColumns, configuration);
    configuration.backgroundMap = row.value("backgroundMap").toByteArray();
    configuration.saveDate = row.value("saveDate").toDateTime();
}

bool updateSwitch(const Store &store, const char *sql, const char *placeholder, bool shown,
                  bool useTransaction) {
    OperationTransaction transaction(store, useTransaction);
    return transaction.commitIfGood(Query(store, sql).bindFlag(placeholder, shown).exec());
}

} // namespace

bool saveSceneConfiguration(const Store &store, const Configuration &configuration, bool useTransaction) {
    OperationTransaction transaction(store, useTransaction);
    return transaction.commitIfGood(Query(store, kDelete).exec() &&
                                    insertSceneConfiguration(store, configuration));
}

bool insertSceneConfiguration(const Store &store, const Configuration &configuration) {
    Query insert(store, kInsert);
    return bindAll(insert.bindNet(), kColumns, configuration)
        .bind(":backgroundMap", configuration.backgroundMap)
        .bindValue(":saveDate", saveDateOf(store, configuration))
        .exec();
}

bool updateShowGrid(const Store &store, bool shown, bool useTransaction) {
    return updateSwitch(store, kUpdateShowGrid, ":showGrid", shown, useTransaction);
}

bool updateShowBackgroundMap(const Store &store, bool shown, bool useTransaction) {
    return updateSwitch(store, kUpdateShowBackgroundMap, ":showBackgroundMap", shown, useTransaction);
}

bool readSceneConfiguration(const Store &store, Configuration &configuration) {
    Query row(store, kSelect);
    if (!row.exec())
        return false;
    if (row.next())
        readRow(row, configuration);
    return row.isComplete();
}

void loadAllSceneConfigurations(NetLoad &net) {
    std::optional<Configuration> &scene = net.contents.settings.scene;
    // The first row counts. There is no order in which single reads take it, and so none here.
    net.forEachRow("Configuration", "", [&](Rows &row) {
        if (!scene)
            readRow(row, scene.emplace());
        else
            net.skip("Configuration", net.store.netId(), "stands behind another row of settings");
    });
    net.store.net().config() = scene.value_or(Configuration());
}

void saveAllSceneConfigurations(NetSave &net) {
    if (net.isGood() && net.contents.settings.scene)
        net.check(saveSceneConfiguration(net.store, *net.contents.settings.scene, false));
}

} // namespace sceneconfigurations

Description describe(const Configuration &configuration) {
    QVariantMap fields = describeAll(sceneconfigurations::kColumns, configuration);
    fields.insert(QStringLiteral("backgroundMapBytes"), configuration.backgroundMap.size());
    fields.insert(QStringLiteral("saveDate"), configuration.saveDate.toString(Qt::ISODate));
    return {1, {}, fields};
}
