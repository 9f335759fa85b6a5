#include "model/SpecialWords.h"
#include "tools/kinds/DescribedFields.h"
#include "tools/kinds/Description.h"

namespace moratools {

namespace {

QJsonObject fieldsOf(const Routing &route) {
    return Fields()
        .add("routingID", route.routingID)
        .add("routingName", route.routingName)
        .add("proportion", route.proportion)
        .addList("linkChains", route.mlLinkChain, [](const QList<Link *> &chain) {
            QJsonArray ids;
            for (const Link *link : chain)
                ids.append(qint64(link->linkID));
            return ids;
        });
}

QJsonObject fieldsOf(const RoutingFLowRatio &ratio) {
    return Fields()
        .add("RoutingFLowRatioID", ratio.routingFLowRatioID)
        .add("routingID", ratio.routingID)
        .add("startDateTime", ratio.startDateTime)
        .add("endDateTime", ratio.endDateTime)
        .add("ratio", ratio.ratio);
}

QJsonArray intervalsOf(const DecisionPoint &point) {
    QJsonArray intervals;
    for (const RoutingFlowByInterval *interval : point.mlFlowByInterval) {
        if (!interval->mlFlowRatio.isEmpty())
            intervals.append(
                QJsonObject(Fields()
                                .add("endDateTime", interval->endDateTime)
                                .addList("flowRatios", interval->mlFlowRatio,
                                         [](const RoutingFLowRatio *ratio) { return fieldsOf(*ratio); })));
    }
    return intervals;
}

} // namespace

Description describe(const VehicleType &type) {
    // A name that happens to be one of the dictionary's stored words is displayed as its other word.
    const QString name = gSpecialWords.trEnToZh(type.vehicleTypeName);
    return {type.vehicleTypeCode, name,
            Fields()
                .add("vehicleTypeCode", type.vehicleTypeCode)
                .add("vehicleTypeName", name)
                .add("length", type.length)
                .add("lengthSD", type.lengthSD)
                .add("width", type.width)
                .add("widthSD", type.widthSD)
                .add("avgSpeed", type.avgSpeed)
                .add("speedSD", type.speedSD)
                .add("maxSpeed", type.maxSpeed)
                .add("avgAcce", type.avgAcce)
                .add("acceSD", type.acceSD)
                .add("maxAcce", type.maxAcce)
                .add("avgDece", type.avgDece)
                .add("deceSD", type.deceSD)
                .add("maxDece", type.maxDece)};
}

Description describe(const VehicleComposition &composition) {
    return {composition.vehicleConsCode, composition.name,
            Fields()
                .add("vehicleConsCode", composition.vehicleConsCode)
                .add("name", composition.name)
                .add("isDefault", composition.isDefault)
                .addList("details", composition.mlDetail, [](const VehicleConsDetail &detail) {
                    return QJsonObject(Fields()
                                           .add("vehicleTypeCode", detail.vehicleTypeCode)
                                           .add("proportion", detail.proportion));
                })};
}

Description describe(const DeparturePoint &point) {
    return {point.departurePointID, point.name,
            Fields()
                .add("departurePointID", point.departurePointID)
                .add("name", point.name)
                .add("linkID", point.linkID)
                .addList("intervals", point.mlInterval, [](const DepartureInterval &interval) {
                    return QJsonObject(Fields()
                                           .add("departureIntervalD", interval.departureIntervalD)
                                           .add("interval", interval.interval)
                                           .add("vehiCount", interval.vehiCount)
                                           .add("vehiCons", interval.vehiCons.vehicleConsCode));
                })};
}

Description describe(const DecisionPoint &point) {
    return {point.deciPointID, point.deciPointName,
            Fields()
                .add("deciPointID", point.deciPointID)
                .add("deciPointName", point.deciPointName)
                .add("linkID", point.mpLink ? point.mpLink->linkID : 0L)
                .add("x", point.x)
                .add("y", point.y)
                .add("z", point.z)
                .addList("routes", point.mlRouting, [](const Routing *route) { return fieldsOf(*route); })
                .add("flowIntervals", intervalsOf(point))};
}

Description describe(const Routing &route) {
    return {route.routingID, route.routingName, fieldsOf(route)};
}

} // namespace moratools
