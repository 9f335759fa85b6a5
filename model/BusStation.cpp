#include "BusStation.h"

#include "Net.h"
#include "SpecialWords.h"

BusStation::BusStation(Link *link, int lane)
    : laneNumber(lane),
      length(gNet.config().inSceneUnits(30.0)),
      type(gSpecialWords.getWord(QStringLiteral("路侧式"))),
      mpLink(link) {}
