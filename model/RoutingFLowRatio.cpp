#include "RoutingFLowRatio.h"

#include <MoraInterfaces/PlainRecords.h>

RoutingFLowRatio &RoutingFLowRatio::operator=(const _RoutingFLowRatio &record) {
    routingFLowRatioID = record.routingFLowRatioID;
    routingID = record.routingID;
    startDateTime = record.startDateTime;
    endDateTime = record.endDateTime;
    ratio = record.ratio;
    return *this;
}
