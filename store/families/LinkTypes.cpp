#include "store/families/LinkTypes.h"

#include "model/SpecialWords.h"
#include "store/core/Query.h"

namespace linktypes {

namespace {

constexpr Sql kSelect = {"select * from LinkType order by linkTypeID",
                         "select * from LinkType where NetId = %0 order by linkTypeID"};

} // namespace

bool readAll(const Store &store, QList<LinkType> &types) {
    Query rows(store, kSelect);
    if (!rows.exec())
        return true;
    while (rows.next()) {
        LinkType type;
        type.linkTypeID = rows.id("linkTypeID");
        type.typeName = gSpecialWords.trEnToZh(rows.text("typeName"));
        type.trafficCapacity = rows.number("trafficCapacity");
        type.trafficSpeed = rows.number("trafficSpeed");
        type.limitSpeed = rows.number("limitSpeed");
        type.minSpeed = rows.number("minSpeed");
        types.append(type);
    }
    return true;
}

} // namespace linktypes
