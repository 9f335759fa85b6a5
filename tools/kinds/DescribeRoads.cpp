#include "tools/kinds/DescribedFields.h"
#include "tools/kinds/Description.h"

#include <QDateTime>

namespace moratools {

namespace {

QJsonObject fieldsOf(const Node *node) {
    if (!node)
        return {};
    Fields fields;
    fields.add("nodeID", node->nodeID).add("nodeName", node->nodeName);
    if (node->mpVertex)
        fields.add("vertexID", node->mpVertex->vertexID);
    return fields;
}

QJsonObject fieldsOf(const Vertex *vertex) {
    return Fields()
        .add("vertexID", vertex->vertexID)
        .add("x", vertex->x)
        .add("y", vertex->y)
        .add("z", vertex->z);
}

QJsonObject fieldsOf(const Lane *lane) {
    return Fields()
        .add("laneID", lane->laneID)
        .add("serialNumber", lane->serialNumber)
        .add("width", lane->width)
        .add("expectTravelDirection", lane->expectTravelDirection)
        .add("actionType", lane->actionType)
        .add("centerLinePoints", lane->centerLinePointsJson)
        .add("leftBreakPoints", lane->leftBreakPointsJson)
        .add("rightBreakPoints", lane->rightBreakPointsJson)
        .add("otherAttrs", lane->otherAttrsJson);
}

QJsonObject fieldsOf(const LaneConnector *laneConnector) {
    return Fields()
        .add("startLane", laneConnector->mpStartLane->laneID)
        .add("endLane", laneConnector->mpEndLane->laneID)
        .add("weight", laneConnector->weight)
        .add("centerLinePoints", laneConnector->centerLinePointsJson)
        .add("leftBreakPoints", laneConnector->leftBreakPointsJson)
        .add("rightBreakPoints", laneConnector->rightBreakPointsJson)
        .add("otherAttrs", laneConnector->otherAttrsJson);
}

} // namespace

Description describe(const Link &link) {
    const auto fieldsOfOne = [](const auto *object) { return fieldsOf(object); };
    return {link.linkID, link.linkName,
            Fields()
                .add("linkID", link.linkID)
                .add("roadId", link.roadId)
                .add("linkName", link.linkName)
                .add("laneNumber", link.laneNumber)
                .add("laneWidth", link.laneWidth)
                .add("laneColor", link.laneColor)
                .add("linkType", link.linkType)
                .add("length", link.length)
                .add("curvature", link.curvature)
                .add("nonLinearCoefficient", link.nonLinearCoefficient)
                .add("linkSaturationFlow", link.linkSaturationFlow)
                .add("linkTrafficFlow", link.linkTrafficFlow)
                .add("desiredSpeed", link.desiredSpeed)
                .add("limitSpeed", link.limitSpeed)
                .add("minSpeed", link.minSpeed)
                .add("addValue", link.addValue)
                .add("centerLinePoints", link.centerLinePointsJson)
                .add("leftBreakPoints", link.leftBreakPointsJson)
                .add("rightBreakPoints", link.rightBreakPointsJson)
                .add("otherAttrs", link.otherAttrsJson)
                .add("startNode", fieldsOf(link.mpStartNode))
                .add("endNode", fieldsOf(link.mpEndNode))
                .addList("vertices", link.mlVertex, fieldsOfOne)
                .addList("lanes", link.mlLane, fieldsOfOne)};
}

Description describe(const Connector &connector) {
    return {connector.connID, connector.connName,
            Fields()
                .add("connID", connector.connID)
                .add("roadId", connector.roadId)
                .add("connName", connector.connName)
                .add("length", connector.length)
                .add("curvature", connector.curvature)
                .add("nonLinearCoefficient", connector.nonLinearCoefficient)
                .add("color", connector.color)
                .add("desiredSpeed", connector.desiredSpeed)
                .add("limitSpeed", connector.limitSpeed)
                .add("startLink", connector.mpStartLink->linkID)
                .add("endLink", connector.mpEndLink->linkID)
                .add("leftBreakPoints", connector.leftBreakPointsJson)
                .add("rightBreakPoints", connector.rightBreakPointsJson)
                .add("otherAttrs", connector.otherAttrsJson)
                .addList("laneConnectors", connector.mlLaneConnector,
                         [](const LaneConnector *laneConnector) { return fieldsOf(laneConnector); })};
}

Description describe(const GuideArrow &arrow) {
    return {arrow.guideArrowID, QString(),
            Fields()
                .add("guideArrowID", arrow.guideArrowID)
                .add("laneID", arrow.laneID)
                .add("length", arrow.length)
                .add("distToTerminal", arrow.distToTerminal)
                .add("arrowType", arrow.arrowType)};
}

Description describe(const LinkType &type) {
    return {type.linkTypeID, type.typeName,
            Fields()
                .add("linkTypeID", type.linkTypeID)
                .add("typeName", type.typeName)
                .add("trafficCapacity", type.trafficCapacity)
                .add("trafficSpeed", type.trafficSpeed)
                .add("limitSpeed", type.limitSpeed)
                .add("minSpeed", type.minSpeed)};
}

Description describe(const DriveFollowedModelParam &set) {
    return {set.modelParamID, QString(),
            Fields()
                .add("modelParamID", set.modelParamID)
                .add("maxAcce", set.maxAcce)
                .add("safeTimeInterval", set.safeTimeInterval)
                .add("desireDece", set.desireDece)
                .add("spaceBetween", set.spaceBetween)
                .add("alfa", set.alfa)
                .add("beit", set.beit)};
}

Description describe(const ChangeLaneModelParam &set) {
    return {set.modelParamID, QString(),
            Fields()
                .add("modelParamID", set.modelParamID)
                .add("headBeit0", set.headBeit0)
                .add("headBeit1Coef", set.headBeit1Coef)
                .add("headBeit2Coef", set.headBeit2Coef)
                .add("headBeit3Coef", set.headBeit3Coef)
                .add("headBeit4Coef", set.headBeit4Coef)
                .add("headRandParam", set.headRandParam)
                .add("headDistParam", set.headDistParam)
                .add("lagBeit0", set.lagBeit0)
                .add("lagBeit1Coef", set.lagBeit1Coef)
                .add("lagBeit2Coef", set.lagBeit2Coef)
                .add("lagBeit3Coef", set.lagBeit3Coef)
                .add("lagBeit4Coef", set.lagBeit4Coef)
                .add("lagRandParam", set.lagRandParam)
                .add("lagDistParam", set.lagDistParam)};
}

Description describe(const SimulateConfiguration &configuration) {
    return {1, QString(),
            Fields()
                .add("simuTimeInterval", configuration.simuTimeInterval)
                .add("recordTrace", configuration.recordTrace)
                .add("vehiCollectDataInterval", configuration.vehiCollectDataInterval)
                .add("vehiQueueDataInterval", configuration.vehiQueueDataInterval)
                .add("vehiTravelDataInterval", configuration.vehiTravelDataInterval)
                .add("acceMultiples", configuration.acceMultiples())
                .add("simuAccuracy", configuration.simuAccuracy)
                .add("randSeed", configuration.randSeed)};
}

Description describe(const Configuration &configuration) {
    return {1, QString(),
            Fields()
                .add("sceneWidth", configuration.sceneWidth)
                .add("sceneHeight", configuration.sceneHeight)
                .add("scale", configuration.scale)
                .add("backgroundMapBytes", configuration.backgroundMap.size())
                .add("showBackgroundMap", configuration.showBackgroundMap)
                .add("showGrid", configuration.showGrid)
                .add("saveDate", configuration.saveDate.toString(Qt::ISODate))};
}

} // namespace moratools
