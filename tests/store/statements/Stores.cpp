#include "tests/support/StatementList.h"

#include <type_traits>

namespace {

constexpr long kNet = StatementList::kNet;

template <class Tools>
void record(StatementList &list) {
    list.add("validateDatabase", [] { Tools::validateDatabase(gDB); });
    list.addWrite("initDictionary", [](bool flag) { Tools::initDictionary(gDB, 3, flag); });
    list.addWrite("initDictionary again", [](bool flag) { Tools::initDictionary(gDB, 3, flag); });
    if constexpr (std::is_same_v<Tools, DBTools>) {
        list.add("selectDbVersion", [] { DBTools::selectDbVersion(gDB); });
        list.add("hasTable", [] { DBTools::hasTable(gDB, "Link"); });
        list.add("tableHasField", [] { DBTools::tableHasField(gDB, "Link", "roadid"); });
        list.add("checkConstraint", [] { DBTools::checkConstraint(gDB, "select 1 where 0"); });
        list.add("hasErrorFieldName", [] { DBTools::hasErrorFieldName(gDB); });
        DBTools::mlTableName.clear(); // it is filled once in a process
        list.add("metadata", [] { DBTools::metadata(gDB); });
        list.add("updateDatabase", [] { DBTools::updateDatabase(gDB); });

        long id = 0;
        list.add("getIDByTableName", [&] { DBTools::getIDByTableName(gDB, "Link", id); });
        list.add("getIDByTableName again", [&] { DBTools::getIDByTableName(gDB, "Link", id); });
        list.add("getMaxID", [] { DBTools::getMaxID(gDB, kNet, "Link"); });
        list.add("getMaxIdByAllTables", [&] { DBTools::getMaxIdByAllTables(gDB, id, "public"); });
        list.add("initSequence", [] { DBTools::initSequence(gDB, "public"); });
        list.add("updateIds", [] { DBTools::updateIds(gDB, true); });
        list.add("getID", [&] { DBTools::getID(gDB, id); });
    } else {
        long id = 0;
        list.add("DBTools_V6::getIDByTableName", [&] { Tools::getIDByTableName(gDB, kNet, "Node", id); });
    }
}

const StatementFamily kStores("Stores", record<DBTools>, record<DBTools_V6>);

} // namespace
