#include "store/families/GuideArrows.h"

#include "model/Description.h"
#include "model/GuideArrow.h"
#include "store/bulk/NetLoad.h"
#include "store/bulk/NetSave.h"
#include "store/core/Columns.h"
#include "store/core/OperationTransaction.h"
#include "store/core/Query.h"

#include <memory>

namespace guidearrows {

namespace {

constexpr Sql kInsert = {
    "insert into GuideArrow(guideArrowID,laneID,length,distToTerminal,arrowType) values(:guideArrowID,:laneID,:length,:distToTerminal,:arrowType)",
    "insert into GuideArrow(NetId, guideArrowID,laneID,length,distToTerminal,arrowType) values(:NetId, :guideArrowID,:laneID,:length,:distToTerminal,:arrowType)"};
constexpr Sql kSelect = {"select * from GuideArrow where guideArrowID = %1",
                         "select * from GuideArrow where NetId = %0 and guideArrowID = %1"};
constexpr Sql kSelectIds = {
    "select guideArrowID from GuideArrow as a join lane b on a.laneID = b.laneID order by guideArrowID",
    "select a.guideArrowID from GuideArrow a join lane b on a.NetId = b.NetId and a.laneID = b.laneID where a.NetId = %0 order by a.guideArrowID"};

constexpr std::tuple kColumns = {
    Column{":guideArrowID", &GuideArrow::guideArrowID},
    Column{":laneID", &GuideArrow::laneID},
    Column{":length", &GuideArrow::length},
    Column{":distToTerminal", &GuideArrow::distToTerminal},
    Column{":arrowType", &GuideArrow::arrowType},
};

} // namespace

bool insertGuideArrow(const Store &store, GuideArrow *arrow, bool inTransaction) {
    if (!arrow)
        return true;
    OperationTransaction transaction(store, inTransaction);
    Query insert(store, kInsert);
    return transaction.commit(bindAll(insert.bindNet(), kColumns, *arrow).exec());
}

GuideArrow *readGuideArrow(const Store &store, long id) {
    Query row(store, kSelect, {id});
    if (!row.execAndNext())
        return nullptr;
    auto arrow = std::make_unique<GuideArrow>();
    readAll(row, kColumns, *arrow);
    return arrow.release();
}

/// The single reads give an arrow also where its lane belongs to no link. Such a lane is not loaded, so that
/// the arrow could not be saved again.
void loadAllGuideArrows(NetLoad &net) {
    net.forEachObject("GuideArrow", "guideArrowID", [&](Rows &row) {
        auto arrow = std::make_unique<GuideArrow>();
        readAll(row, kColumns, *arrow);
        if (net.store.net().getLaneById(arrow->laneID))
            net.contents.guideArrows.push_back(std::move(arrow));
        else
            net.skip("GuideArrow", arrow->guideArrowID, "belongs to no lane");
    });
}

QHash<const GuideArrow *, const Lane *> lanesOfUnnamed(const NetContents &contents) {
    QHash<const GuideArrow *, const Lane *> laneOf;
    for (const auto &arrow : contents.guideArrows) {
        if (arrow->laneID == 0)
            laneOf.insert(arrow.get(), nullptr);
    }
    if (laneOf.isEmpty())
        return laneOf;
    for (const auto &link : contents.links) {
        for (const Lane *lane : qAsConst(link->mlLane)) {
            // The lists may hold arrows that are gone: their addresses alone are looked at.
            for (const GuideArrow *arrow : lane->mlGuideArrow) {
                if (laneOf.contains(arrow))
                    laneOf.insert(arrow, lane);
            }
        }
    }
    return laneOf;
}

void saveAllGuideArrows(NetSave &net) {
    net.giveIds("GuideArrow", net.contents.guideArrows, &GuideArrow::guideArrowID);
    const QHash<const GuideArrow *, const Lane *> laneOf = lanesOfUnnamed(net.contents);
    for (const auto &arrow : net.contents.guideArrows) {
        if (const Lane *lane = laneOf.value(arrow.get()))
            net.set(arrow->laneID, lane->laneID);
    }
    net.writeEach("GuideArrow", net.contents.guideArrows,
                  [](RowWriter &row, const GuideArrow &arrow) { bindAll(row, kColumns, arrow); });
}

bool listGuideArrowIds(const Store &store, QList<long> &ids) {
    return appendIds(store, kSelectIds, ids);
}

} // namespace guidearrows

Description describe(const GuideArrow &arrow) {
    return {arrow.guideArrowID, {}, describeAll(guidearrows::kColumns, arrow)};
}
