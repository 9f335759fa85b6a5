#include "DecisionPoint.h"

#include "Net.h"

#include <MoraInterfaces/PlainRecords.h>

DecisionPoint::DecisionPoint(const DecisionPoint &other) {
    *this = other;
}

DecisionPoint &DecisionPoint::operator=(const DecisionPoint &other) {
    if (this == &other)
        return *this;
    deciPointID = other.deciPointID;
    deciPointName = other.deciPointName;
    mpLink = other.mpLink;
    x = other.x;
    y = other.y;
    z = other.z;
    mlRouting = other.mlRouting;
    mlFlowByInterval = other.mlFlowByInterval;
    for (Routing *route : qAsConst(mlRouting)) {
        if (route)
            route->mpDecisionPoint = this;
    }
    return *this;
}

DecisionPoint &DecisionPoint::operator=(const _DecisionPoint &record) {
    deciPointID = record.deciPointID;
    deciPointName = record.deciPointName;
    mpLink = gNet.getLinkById(record.linkID);
    x = record.x;
    y = record.y;
    z = record.z;
    return *this;
}
