#include "model/removal/NetRemoval.h"

#include "model/Lane.h"
#include "model/LaneConnector.h"

using lists::any;
using lists::each;
using lists::takeOut;

QString NetRemoval::named(const char *word, long id, const QString &name) {
    QString text = id != 0 ? QLatin1String(word) + QLatin1Char(' ') + QString::number(id)
                           : QStringLiteral("new ") + QLatin1String(word);
    return name.isEmpty() ? text : text + QStringLiteral(" \"") + name + QLatin1Char('"');
}

void NetRemoval::apply(NetContents &net) const {
    for (const auto &clear : mClear)
        clear(net);
    forgetArrows(net);
    takeOut(net.traffic.routeLanes, [this](const RouteLanes &pair) { return mPairs.contains(keyOf(pair)); });
    eraseDoomed(net);
}

void NetRemoval::reachCatalogue() {
    each(mNet.traffic.vehicleTypes, [this](const VehicleType &type) {
        if (isDoomed(&type))
            mTypes.insert(type.vehicleTypeCode);
    });
    each(mNet.traffic.compositions, [this](VehicleComposition &composition) {
        const auto goes = [this](const VehicleConsDetail &detail) {
            return mTypes.contains(detail.vehicleTypeCode);
        };
        if (isDoomed(&composition))
            remember(mCompositions, composition.vehicleConsCode);
        else if (std::any_of(composition.mlDetail.cbegin(), composition.mlDetail.cend(), goes))
            loseTypes(composition, "has a share of a vehicle type that goes", &VehicleComposition::mlDetail,
                      [](const VehicleConsDetail &detail) { return detail.vehicleTypeCode; });
    });
}

bool NetRemoval::isListed(const QList<long> &codes) const {
    return std::any_of(codes.begin(), codes.end(), [this](long code) { return mTypes.contains(code); });
}

void NetRemoval::reachLinks() {
    each(mNet.links, [this](Link &link) {
        if (isDoomed(&link)) {
            remember(mLinks, link.linkID);
            for (const Vertex *vertex : qAsConst(link.mlVertex))
                mVertices.insert(vertex);
        }
        each(link.mlLane, [&](Lane &lane) { reachLane(link, lane); });
    });
    if (mVertices.isEmpty())
        return;
    each(mNet.links, [this](Link &link) {
        if (!isDoomed(&link) && (stands(link.mpStartNode) || stands(link.mpEndNode)))
            moveNodes(link);
    });
}

void NetRemoval::reachLane(Link &link, Lane &lane) {
    if (isDoomed(&link))
        reachPart("Lane", "lane", lane.laneID, {}, &lane);
    if (isDoomed(&lane)) {
        remember(mLanes, lane.laneID);
        for (const GuideArrow *arrow : qAsConst(lane.mlGuideArrow))
            mArrowsOfLanes.insert(arrow);
        return;
    }
    const auto goes = [types = mTypes](const auto &restriction) { return types.contains(restriction.first); };
    if (std::none_of(lane.mlLimitVehicle.cbegin(), lane.mlLimitVehicle.cend(), goes))
        return;
    reachOther("Lane", "lane", lane.laneID, {}, &lane, "is closed to a vehicle type that goes", Fate::Loses);
    clear(link, [goes, &lane](Link &) { takeOut(lane.mlLimitVehicle, goes); });
}

void NetRemoval::moveNodes(Link &link) {
    reach(link, "has a node on a vertex of a link that goes", Fate::Loses);
    clear(link, [vertices = mVertices](Link &changed) {
        const bool hasOwn = !changed.mlVertex.isEmpty();
        if (changed.mpStartNode && vertices.contains(changed.mpStartNode->mpVertex))
            changed.mpStartNode->mpVertex = hasOwn ? changed.mlVertex.first() : nullptr;
        if (changed.mpEndNode && vertices.contains(changed.mpEndNode->mpVertex))
            changed.mpEndNode->mpVertex = hasOwn ? changed.mlVertex.last() : nullptr;
    });
}

void NetRemoval::reachArrows() {
    if (mLanes.isEmpty() && mArrowsOfLanes.isEmpty())
        return;
    each(mNet.guideArrows, [this](const GuideArrow &arrow) {
        // One that is new may be known to its lane alone.
        const bool goes = arrow.laneID != 0 ? mLanes.contains(arrow.laneID) : mArrowsOfLanes.contains(&arrow);
        if (goes && !isDoomed(&arrow))
            reach(arrow, "is painted on a lane that goes");
    });
}

void NetRemoval::reachConnectors() {
    each(mNet.connectors, [this](Connector &connector) {
        if (!isDoomed(&connector) && (isDoomed(connector.mpStartLink) || isDoomed(connector.mpEndLink)))
            reach(connector, "joins a link that goes");
        if (isDoomed(&connector)) {
            remember(mConnectors, connector.connID);
            each(connector.mlLaneConnector, [this](const LaneConnector &lanes) {
                reachPart("LaneConnector", "lane connector", lanes.laneConnId, {}, &lanes);
            });
            return;
        }
        reachParts(connector, &Connector::mlLaneConnector, [this](const LaneConnector &lanes) {
            if (!isDoomed(lanes.mpStartLane) && !isDoomed(lanes.mpEndLane))
                return false;
            reachOther("LaneConnector", "lane connector", lanes.laneConnId, {}, &lanes,
                       "joins a lane that goes");
            return true;
        });
        if (isListed(connector.mlLimitVehicle))
            loseTypes(connector, "is closed to a vehicle type that goes", &Connector::mlLimitVehicle, itself);
    });
}

bool NetRemoval::isOnDoomedRoad(long road, bool isConnector) const {
    const bool asLink = mLinks.contains(road);
    const bool asConnector = mConnectors.contains(road);
    if (!asLink && !asConnector)
        return false;
    const bool isBoth = mNet.find<Link>(road) && mNet.find<Connector>(road);
    return !isBoth || (isConnector ? asConnector : asLink);
}

void NetRemoval::forgetArrows(NetContents &net) const {
    if (!any(net.guideArrows, [this](const GuideArrow &arrow) { return isDoomed(&arrow); }))
        return;
    each(net.links, [this](Link &link) {
        each(link.mlLane, [this](Lane &lane) {
            takeOut(lane.mlGuideArrow, [this](const GuideArrow *arrow) { return isDoomed(arrow); });
        });
    });
}

void NetRemoval::eraseDoomed(NetContents &net) const {
    forEachNetKind([&](auto kind) {
        auto &list = kind.list(net);
        const auto goes = [this](const auto &object) { return object && isDoomed(object.get()); };
        for (const auto &object : list) {
            if (goes(object))
                net.changes.markRemoved(kind.table, object.get(), kind.idOf(*object));
        }
        takeOut(list, goes);
    });
}
