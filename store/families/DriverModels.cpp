#include "store/families/DriverModels.h"

#include "model/Description.h"
#include "store/bulk/NetLoad.h"
#include "store/bulk/NetSave.h"
#include "store/core/Columns.h"
#include "store/core/OperationTransaction.h"
#include "store/core/Query.h"

namespace drivermodels {

namespace {

constexpr Sql kInsertFollowing = {
    "insert into DriveFollowedModelParam(modelParamID, maxAcce, safeTimeInterval, desireDece, spaceBetween, alfa, beit) values(:modelParamID, :maxAcce, :safeTimeInterval, :desireDece, :spaceBetween, :alfa, :beit)",
    "insert into DriveFollowedModelParam(NetId, modelParamID, maxAcce, safeTimeInterval, desireDece, spaceBetween, alfa, beit) values(:NetId, :modelParamID, :maxAcce, :safeTimeInterval, :desireDece, :spaceBetween, :alfa, :beit)"};
constexpr Sql kUpdateFollowing = {
    "update DriveFollowedModelParam set maxAcce = :maxAcce, safeTimeInterval = :safeTimeInterval, desireDece = :desireDece, spaceBetween = :spaceBetween, alfa = :alfa, beit = :beit where modelParamID = :modelParamID",
    "update DriveFollowedModelParam set maxAcce = :maxAcce, safeTimeInterval = :safeTimeInterval, desireDece = :desireDece, spaceBetween = :spaceBetween, alfa = :alfa, beit = :beit where NetId = %0 and modelParamID = :modelParamID"};
constexpr Sql kSelectFirst = {"select * from DriveFollowedModelParam where modelParamID = 1",
                              "select * from DriveFollowedModelParam where NetId = %0 and modelParamID = 1"};
constexpr Sql kSelectSecond = {"select * from DriveFollowedModelParam where modelParamID = 2",
                               "select * from DriveFollowedModelParam where NetId = %0 and modelParamID = 2"};

constexpr std::tuple kFollowingColumns = {
    Column{":modelParamID", &DriveFollowedModelParam::modelParamID},
    Column{":maxAcce", &DriveFollowedModelParam::maxAcce},
    Column{":safeTimeInterval", &DriveFollowedModelParam::safeTimeInterval},
    Column{":desireDece", &DriveFollowedModelParam::desireDece},
    Column{":spaceBetween", &DriveFollowedModelParam::spaceBetween},
    Column{":alfa", &DriveFollowedModelParam::alfa},
    Column{":beit", &DriveFollowedModelParam::beit},
};

constexpr Sql kDeleteLaneChange = {"delete from ChangeLaneModelParam",
                                   "delete from ChangeLaneModelParam where NetId = %0"};
constexpr Sql kInsertLaneChange = {
    "insert into ChangeLaneModelParam(modelParamID, headBeit0, headBeit1Coef, headBeit2Coef, headBeit3Coef, headBeit4Coef, headRandParam, headDistParam, lagBeit0, lagBeit1Coef, lagBeit2Coef, lagBeit3Coef, lagBeit4Coef, lagRandParam, lagDistParam) values(:modelParamID, :headBeit0, :headBeit1Coef, :headBeit2Coef, :headBeit3Coef, :headBeit4Coef, :headRandParam, :headDistParam, :lagBeit0, :lagBeit1Coef, :lagBeit2Coef, :lagBeit3Coef, :lagBeit4Coef, :lagRandParam, :lagDistParam)",
    "insert into ChangeLaneModelParam(NetId, modelParamID, headBeit0, headBeit1Coef, headBeit2Coef, headBeit3Coef, headBeit4Coef, headRandParam, headDistParam, lagBeit0, lagBeit1Coef, lagBeit2Coef, lagBeit3Coef, lagBeit4Coef, lagRandParam, lagDistParam) values(:NetId, :modelParamID, :headBeit0, :headBeit1Coef, :headBeit2Coef, :headBeit3Coef, :headBeit4Coef, :headRandParam, :headDistParam, :lagBeit0, :lagBeit1Coef, :lagBeit2Coef, :lagBeit3Coef, :lagBeit4Coef, :lagRandParam, :lagDistParam)"};
constexpr Sql kSelectLaneChange = {
    "select * from ChangeLaneModelParam order by modelParamID",
    "select * from ChangeLaneModelParam where NetId = %0 order by modelParamID"};

constexpr std::tuple kLaneChangeColumns = {
    Column{":modelParamID", &ChangeLaneModelParam::modelParamID},
    Column{":headBeit0", &ChangeLaneModelParam::headBeit0},
    Column{":headBeit1Coef", &ChangeLaneModelParam::headBeit1Coef},
    Column{":headBeit2Coef", &ChangeLaneModelParam::headBeit2Coef},
    Column{":headBeit3Coef", &ChangeLaneModelParam::headBeit3Coef},
    Column{":headBeit4Coef", &ChangeLaneModelParam::headBeit4Coef},
    Column{":headRandParam", &ChangeLaneModelParam::headRandParam},
    Column{":headDistParam", &ChangeLaneModelParam::headDistParam},
    Column{":lagBeit0", &ChangeLaneModelParam::lagBeit0},
    Column{":lagBeit1Coef", &ChangeLaneModelParam::lagBeit1Coef},
    Column{":lagBeit2Coef", &ChangeLaneModelParam::lagBeit2Coef},
    Column{":lagBeit3Coef", &ChangeLaneModelParam::lagBeit3Coef},
    Column{":lagBeit4Coef", &ChangeLaneModelParam::lagBeit4Coef},
    Column{":lagRandParam", &ChangeLaneModelParam::lagRandParam},
    Column{":lagDistParam", &ChangeLaneModelParam::lagDistParam},
};

bool readSet(const Store &store, const Sql &sql, DriveFollowedModelParam &param) {
    Query row(store, sql);
    if (!row.exec())
        return false;
    if (row.next())
        ::readAll(row, kFollowingColumns, param);
    return row.isComplete();
}

} // namespace

bool insertFollowedModelParam(const Store &store, const DriveFollowedModelParam &param) {
    Query insert(store, kInsertFollowing);
    return bindAll(insert.bindNet(), kFollowingColumns, param).exec();
}

bool saveFollowedModelParam(const Store &store, const DriveFollowedModelParam &param, bool useTransaction) {
    OperationTransaction transaction(store, useTransaction);
    Query update(store, kUpdateFollowing);
    return transaction.commit(bindAll(update, kFollowingColumns, param).exec());
}

bool readFollowedModelParams(const Store &store, DriveFollowedModelParam &first,
                             DriveFollowedModelParam &second) {
    const bool gotFirst = readSet(store, kSelectFirst, first);
    return readSet(store, kSelectSecond, second) && gotFirst;
}

bool insertChangeLaneParams(const Store &store, const QList<ChangeLaneModelParam> &params) {
    bool written = true;
    Query insert(store, kInsertLaneChange);
    for (const ChangeLaneModelParam &param : params) {
        bindAll(insert.bindNet(), kLaneChangeColumns, param);
        written = insert.exec() && written;
    }
    return written;
}

bool saveChangeLaneParams(const Store &store, const QList<ChangeLaneModelParam> &params,
                          bool useTransaction) {
    OperationTransaction transaction(store, useTransaction);
    const bool emptied = Query(store, kDeleteLaneChange).exec();
    return transaction.commit(insertChangeLaneParams(store, params) && emptied);
}

bool readChangeLaneParams(const Store &store, QList<ChangeLaneModelParam> &params) {
    Query rows(store, kSelectLaneChange);
    if (!rows.exec())
        return false;
    while (rows.next()) {
        ChangeLaneModelParam param;
        ::readAll(rows, kLaneChangeColumns, param);
        params.append(param);
    }
    return rows.isComplete();
}

namespace {

template <class Param, class Columns>
void loadSets(NetLoad &net, const char *table, const Columns &columns, QList<Param> &sets) {
    net.forEachRow(table, "modelParamID", [&](Rows &row) {
        sets.append(Param());
        ::readAll(row, columns, sets.last());
    });
}

template <class Param, class Columns>
void saveSets(NetSave &net, const char *table, const Columns &columns, const QList<Param> &sets) {
    if (sets.isEmpty())
        return;
    net.empty(table);
    net.write(table, sets.size(), [&](RowWriter &row) {
        for (const Param &param : sets)
            bindAll(row.bindNet(), columns, param).exec();
    });
}

} // namespace

void loadAllDriverModels(NetLoad &net) {
    NetSettings &settings = net.contents.settings;
    loadSets(net, "DriveFollowedModelParam", kFollowingColumns, settings.carFollowing);
    loadSets(net, "ChangeLaneModelParam", kLaneChangeColumns, settings.laneChanging);
}

void saveAllDriverModels(NetSave &net) {
    const NetSettings &settings = net.contents.settings;
    saveSets(net, "DriveFollowedModelParam", kFollowingColumns, settings.carFollowing);
    saveSets(net, "ChangeLaneModelParam", kLaneChangeColumns, settings.laneChanging);
}

} // namespace drivermodels

Description describe(const DriveFollowedModelParam &set) {
    return {set.modelParamID, {}, describeAll(drivermodels::kFollowingColumns, set)};
}

Description describe(const ChangeLaneModelParam &set) {
    return {set.modelParamID, {}, describeAll(drivermodels::kLaneChangeColumns, set)};
}
