#include "store/families/LinkTypes.h"

#include "model/Description.h"
#include "store/bulk/NetLoad.h"
#include "store/bulk/NetSave.h"
#include "store/bulk/StoredWord.h"
#include "store/core/Columns.h"
#include "store/core/Query.h"

#include <algorithm>

namespace linktypes {

namespace {

// Whole networks alone write link types. Their rows are there from the start as a rule, with a column that
// entities lack.
constexpr Sql kUpdate = {
    "update LinkType set typeName = :typeName, trafficCapacity = :trafficCapacity, trafficSpeed = :trafficSpeed, limitSpeed = :limitSpeed, minSpeed = :minSpeed where linkTypeID = :linkTypeID",
    "update LinkType set typeName = :typeName, trafficCapacity = :trafficCapacity, trafficSpeed = :trafficSpeed, limitSpeed = :limitSpeed, minSpeed = :minSpeed where linkTypeID = :linkTypeID and NetId = :NetId"};
constexpr Sql kSelect = {"select * from LinkType order by linkTypeID",
                         "select * from LinkType where NetId = %0 order by linkTypeID"};

constexpr Word kName{":typeName", &LinkType::typeName};
constexpr std::tuple kColumns = {
    Column{":linkTypeID", &LinkType::linkTypeID},           kName,
    Column{":trafficCapacity", &LinkType::trafficCapacity}, Column{":trafficSpeed", &LinkType::trafficSpeed},
    Column{":limitSpeed", &LinkType::limitSpeed},           Column{":minSpeed", &LinkType::minSpeed},
};

template <class Row>
LinkType readRow(Row &row) {
    LinkType type;
    readAll(row, kColumns, type);
    type.typeName = row.store().words().trEnToZh(type.typeName);
    return type;
}

template <class Row>
Row &bindRow(Row &row, const LinkType &type) {
    return bindAll(row, kColumns, type)
        .bind(kName.placeholder, storedword::of(row.store().words(), type.typeName, type.storedTypeName));
}

} // namespace

bool readLinkTypes(const Store &store, QList<LinkType> &types) {
    Query rows(store, kSelect);
    if (!rows.exec())
        return true;
    while (rows.next())
        types.append(readRow(rows));
    return true;
}

void loadAllLinkTypes(NetLoad &net) {
    net.forEachObject("LinkType", "linkTypeID", [&net](Rows &row) {
        LinkType type = readRow(row);
        type.storedTypeName = storedword::kept(row.store().words(), row.text("typeName"), type.typeName);
        net.contents.linkTypes.append(type);
    });
    net.store.linkTypes() = net.contents.linkTypes;
}

void saveAllLinkTypes(NetSave &net) {
    if (!net.isGood())
        return;
    QList<LinkType> present;
    if (!net.isRecorded())
        readLinkTypes(net.store, present);
    QList<const LinkType *> added;
    Query update(net.store, kUpdate);
    for (const LinkType &type : qAsConst(net.contents.linkTypes)) {
        const bool isPresent = std::any_of(present.cbegin(), present.cend(), [&](const LinkType &other) {
            return other.linkTypeID == type.linkTypeID;
        });
        if (isPresent)
            net.check(bindRow(update, type).bindNet().exec());
        else
            added.append(&type);
    }
    net.writeEach("LinkType", added, [](RowWriter &row, const LinkType &type) { bindRow(row, type); });
}

} // namespace linktypes

Description describe(const LinkType &type) {
    return {type.linkTypeID, type.typeName, describeAll(linktypes::kColumns, type)};
}
