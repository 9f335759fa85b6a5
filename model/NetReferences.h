#pragma once

#include <QList>
#include <QString>

/// What becomes of an object when one that it refers to is removed:
///
/// | removed | refers to it | fate |
/// | --- | --- | --- |
/// | link | its lanes | Part |
/// | link | connectors at either end, departure points, decision points, bus stations | Goes |
/// | link | routes and bus lines that follow it: with a hole they were others | Goes |
/// | link | nodes of other links that stand on a vertex of it: they move to their own link's end | Loses |
/// | link, connector | detectors, counters, collectors, speed areas and zones on it | Goes |
/// | lane | guide arrows, lane connectors from or to it, lamps on it, route lanes that name it | Goes |
/// | lane | lamps that lead to it: they lead to none | Loses |
/// | connector | its lane connectors | Part |
/// | connector | route lanes on it | Goes |
/// | signal group | its phases | Part |
/// | signal group | vehicle detectors that serve it: a store keeps none without | Goes |
/// | phase | lamps that show it | Goes |
/// | decision point | its routes | Part |
/// | route | its lanes on connectors | Part |
/// | bus station | stops of lines there | Goes |
/// | bus line | its stops | Part |
/// | vehicle type | compositions, detectors, speed areas, lanes and connectors that list it | Loses |
/// | vehicle composition | departure intervals that use it: they use none | Loses |
///
/// An owner of which only a part goes (a connector without lane connectors, a decision point without routes, a
/// line without stops) stays. The number of a road is that of a link or of a connector; where both have it,
/// the object tells by its lane numbers or its kind of road, as everywhere. The numbers of roads that links
/// and connectors have, words like the type of a link, the number of a phase in a detector and numbers of lanes
/// are no references.
enum class Fate {
    Part, ///< it is part of what is removed, and goes with it
    Goes, ///< it cannot be without what is removed, and goes, too
    Loses ///< it stays, and loses what refers to what is removed
};

/// Whether a removal may reach beyond the object that is named and its parts.
enum class Cascade {
    Refuse, ///< nothing is removed while another object refers to it
    Take    ///< what refers to it goes along, or loses the reference
};

/// An object that a removal reaches.
struct NetObject {
    QString table; ///< as the store names it; RoutingLaneConnector for the lanes of a route on a connector
    long id = 0;   ///< of the lanes of a route that of the route; 0 of a new object
    /// Where it is: of the class that a network's list of that table has, or of a part (Lane, LaneConnector,
    /// SignalPhase, Routing, BusStationLine) or a RouteLanes. Null for one of a store.
    const void *object = nullptr;
    QString text; ///< in words: `signal lamp 9 "north": stands on a lane that goes`
    Fate fate = Fate::Goes;
};
