#include "tools/sumo/export/RoadKinds.h"

#include "model/Words.h"

#include <algorithm>
#include <iterator>

namespace moratools {

namespace roadkinds {

const Type *typeOf(const QString &linkType) {
    // Classes of OpenStreetMap (wiki page "Key:highway"), so that an import finds the word again. The priorities keep
    // the order in which these roads have the right of way.
    static const struct {
        Words::Word word{};
        Type type{};
    } types[] = {
        {Words::Freeway, {"highway.motorway", 14}},
        {Words::Expressway, {"highway.trunk", 12}},
        {Words::Ramp, {"highway.primary_link", 9}},
        {Words::ArterialRoad, {"highway.primary", 10}},
        {Words::SecondaryRoad, {"highway.secondary", 8}},
        {Words::SecondaryRoadSynonym, {"highway.secondary", 8}},
        {Words::AccessRoad, {"highway.residential", 4}},
        {Words::MixedLane, {"highway.unclassified", 5}},
        {Words::BusLane, {"highway.busway", 5}},
        {Words::NonMotorizedLane, {"highway.cycleway", 2}},
        {Words::Sidewalk, {"highway.footway", 1}},
    };
    const auto *found = std::find_if(std::begin(types), std::end(types),
                                     [&linkType](const auto &entry) { return entry.word.names(linkType); });
    return found == std::end(types) ? nullptr : &found->type;
}

Permissions permissionsOf(const QString &actionType) {
    if (Words::BusLane.names(actionType))
        return {QStringLiteral("bus coach"), {}};
    if (Words::NonMotorizedLane.names(actionType))
        return {QStringLiteral("bicycle"), {}};
    if (Words::Sidewalk.names(actionType))
        return {QStringLiteral("pedestrian"), {}};
    const QString noRoadUsers = QStringLiteral("tram rail_urban rail rail_electric rail_fast ship");
    if (Words::MixedLane.names(actionType))
        return {{}, QStringLiteral("pedestrian ") + noRoadUsers};
    return {{}, QStringLiteral("pedestrian bicycle ") + noRoadUsers};
}

bool isSameWord(const QString &a, const QString &b) {
    return a == b || std::any_of(std::begin(Words::kAll), std::end(Words::kAll),
                                 [&](const Words::Word &word) { return word.names(a) && word.names(b); });
}

} // namespace roadkinds

} // namespace moratools
