#pragma once

#include "model/MoraStoreExport.h"

#include <QList>
#include <QSqlDatabase>
#include <QString>

#include <memory>
#include <optional>

/// The tables whose rows are numbered by the store, by their names in it.
enum class Table {
    VehicleType,
    VehicleConstitutent,
    Vertex,
    Node,
    Link,
    Lane,
    GuideArrow,
    Connector,
    LaneConnector,
    SignalGroup,
    SignalPhase,
    SignalLamp,
    DeparturePoint,
    DepartureInterval,
    DecisionPoint,
    Routing,
    RoutingFLowRatio,
    VehicleDetector,
    VehicleQueueCounter,
    VehicleTravelDetector,
    VehicleDrivInfoCollecter,
    BusLine,
    BusStation,
    BusStationLine,
    BusStationPassengerArriving,
    AccidentZone,
    RoadWorkZone,
    ReduceSpeedArea,
    ReduceSpeedInterval
};

/// New identifiers for objects of one network of an open store, before they are written.
///
///     NetIds ids(db, netId);
///     if (!ids.draw(*link))   // the link, its vertices, nodes and lanes
///         // why: FailureScope
///
/// The same counters as DBTools::getIDByTableName() draws from, with its rules: none is given out twice by
/// this process, nor one that a row uses. Refused with a record, and with nothing drawn or changed, are a
/// network that the store does not have (0 is none), and a table that numbers no rows.
class MORASTORE_EXPORT NetIds {
public:
    /// Keeps a reference to the connection. @param netId stores of one network do not use it.
    NetIds(QSqlDatabase &db, long netId);
    /// For the current network of the connection's store: gNet's for gDB.
    static NetIds ofCurrentNet(QSqlDatabase &db);

    /// The next identifier; none when refused.
    std::optional<long> next(Table table) const;
    /// The same for a table by its name, without regard to case.
    std::optional<long> next(const QString &table) const;
    /// @p count of them, ascending; empty when refused.
    QList<long> next(Table table, int count) const;

    /// @{ For programs that number objects in memory first and ask the store once: what has been given out of a
    /// table is at most lastGiven(), and @p count identifiers above that and above @p floor are drawn with a
    /// few statements, whatever the count. Nothing else draws between the two in a transaction on a file; on a
    /// server others may, and the identifiers are not the ones expected then.
    ///
    /// None when the store cannot be asked; empty when refused. Both are recorded.
    std::optional<long> lastGiven(const QString &table) const;
    QList<long> nextAbove(const QString &table, long floor, int count) const;
    /// @}

    /// Gives identifiers to the object and its parts where they are 0; those that are not 0 stay. Parts that
    /// name their owner by a number which is 0 get the owner's. A route that gets a number here is not named
    /// by the flow ratios that are there: make these afterwards, and draw once more.
    ///
    /// Every class with a numbered table: VehicleType, VehicleComposition, Link, GuideArrow, Connector,
    /// SignalGroup, SignalLamp, DeparturePoint, DecisionPoint, Routing, VehicleDetector, VehicleQueueCounter,
    /// VehicleTravelDetector, VehicleDrivInfoCollector, BusLine, BusStation, AccidentZone, RoadWorkZone,
    /// ReduceSpeedArea.
    template <class Object>
    bool draw(Object &object) const {
        return drawFor(QList<Object *>{&object});
    }
    /// The same for all objects of a list of pointers (QList, std::vector of owning ones, ...), with a few
    /// statements for each table. An object that is there twice, and a part that two objects share, gets one.
    template <class List>
    bool drawEach(const List &objects) const {
        using Object = typename std::pointer_traits<typename List::value_type>::element_type;
        QList<Object *> pointers;
        for (const auto &object : objects) {
            if (object)
                pointers.append(&*object);
        }
        return drawFor(pointers);
    }

private:
    template <class Object>
    bool drawFor(const QList<Object *> &objects) const;

    QSqlDatabase &mDb;
    long mNetId;
};
