#include "BusStation.h"

#include "Net.h"
#include "SpecialWords.h"
#include "Words.h"

BusStation::BusStation(Link *link, int lane) : BusStation(gNet, gSpecialWords) {
    laneNumber = lane;
    mpLink = link;
}

BusStation::BusStation(const Net &net, const SpecialWords &words)
    : length(net.config().inSceneUnits(30.0)), type(words.getWord(Words::Curbside)) {}
