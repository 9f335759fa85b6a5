#pragma once

#include "model/NetContents.h"
#include "store/bulk/NetSave.h"
#include "store/editing/Changes.h"
#include "store/families/BusLines.h"
#include "store/families/BusStations.h"
#include "store/families/Connectors.h"
#include "store/families/DecisionPoints.h"
#include "store/families/DeparturePoints.h"
#include "store/families/DrivInfoCollectors.h"
#include "store/families/GuideArrows.h"
#include "store/families/Links.h"
#include "store/families/QueueCounters.h"
#include "store/families/ReduceSpeedAreas.h"
#include "store/families/SignalGroups.h"
#include "store/families/SignalLamps.h"
#include "store/families/TravelDetectors.h"
#include "store/families/VehicleCompositions.h"
#include "store/families/VehicleDetectors.h"
#include "store/families/Wholeness.h"
#include "store/families/Zones.h"

#include <memory>
#include <vector>

namespace objects {

/// How objects of a class become rows: as whole networks are saved.
template <class T>
struct ObjectKind {
    void (*save)(NetSave &net) = nullptr;
    bool (*isWhole)(const Store &store, const T &object) = nullptr; ///< asked first, where there is one
};

template <class T>
inline const ObjectKind<T> kKind = {};
template <>
inline const ObjectKind<VehicleType> kKind<VehicleType> = {vehiclecompositions::saveCatalogue};
template <>
inline const ObjectKind<VehicleComposition> kKind<VehicleComposition> = {vehiclecompositions::saveCatalogue};
template <>
inline const ObjectKind<Link> kKind<Link> = {links::saveAllLinks, wholeness::isWhole};
template <>
inline const ObjectKind<GuideArrow> kKind<GuideArrow> = {guidearrows::saveAllGuideArrows};
template <>
inline const ObjectKind<Connector> kKind<Connector> = {connectors::saveAllConnectors, wholeness::isWhole};
template <>
inline const ObjectKind<SignalGroup> kKind<SignalGroup> = {signalgroups::saveAllSignalGroups,
                                                           wholeness::isWhole};
template <>
inline const ObjectKind<SignalLamp> kKind<SignalLamp> = {signallamps::saveAllSignalLamps, wholeness::isWhole};
template <>
inline const ObjectKind<DeparturePoint> kKind<DeparturePoint> = {departurepoints::saveAllDeparturePoints};
template <>
inline const ObjectKind<DecisionPoint> kKind<DecisionPoint> = {decisionpoints::saveAllDecisionPoints,
                                                               wholeness::isWhole};
template <>
inline const ObjectKind<VehicleDetector> kKind<VehicleDetector> = {vehicledetectors::saveAllVehicleDetectors};
template <>
inline const ObjectKind<VehicleQueueCounter> kKind<VehicleQueueCounter> = {
    queuecounters::saveAllQueueCounters};
template <>
inline const ObjectKind<VehicleTravelDetector> kKind<VehicleTravelDetector> = {
    traveldetectors::saveAllTravelDetectors};
template <>
inline const ObjectKind<VehicleDrivInfoCollector> kKind<VehicleDrivInfoCollector> = {
    drivinfocollectors::saveAllDrivInfoCollectors};
template <>
inline const ObjectKind<BusStation> kKind<BusStation> = {busstations::saveAllBusStations, wholeness::isWhole};
template <>
inline const ObjectKind<BusLine> kKind<BusLine> = {buslines::saveAllBusLines, wholeness::isWhole};
template <>
inline const ObjectKind<ReduceSpeedArea> kKind<ReduceSpeedArea> = {reducespeedareas::saveAllReduceSpeedAreas,
                                                                   wholeness::isWhole};
template <>
inline const ObjectKind<AccidentZone> kKind<AccidentZone> = {zones::saveAllZones, wholeness::isWhole};
template <>
inline const ObjectKind<RoadWorkZone> kKind<RoadWorkZone> = {zones::saveAllZones, wholeness::isWhole};

/// A part of a network that is saved without owning its objects. What a save changes in them (identifiers
/// that were 0) comes back unless keep() is called.
class Borrowed {
public:
    Borrowed(const Store &store, RowRecorder *recorder) : mSave(store, mPart, mNobody, recorder) {}
    ~Borrowed() {
        for (const auto &release : mReleases)
            release();
    }
    Borrowed(const Borrowed &) = delete;
    Borrowed &operator=(const Borrowed &) = delete;

    template <class T>
    void lend(T *object) {
        Objects<T> &list = NetKind<T>::list(mPart);
        if (list.empty())
            mReleases.push_back([&list] {
                for (std::unique_ptr<T> &lent : list)
                    static_cast<void>(lent.release());
            });
        list.emplace_back(object);
    }
    NetContents &part() { return mPart; }
    NetSave &save() { return mSave; }

private:
    NetContents mPart;
    std::vector<std::function<void()>> mReleases;
    NetProgress mNobody; ///< hears of it
    NetSave mSave;       ///< takes back first
};

/// Makes the rows of objects and keeps what that changes in them, once the rows are in the store.
class Recording {
public:
    Recording(const Store &store, Changes &changes) : mStore(store), mChanges(changes) {}

    /// Records one object; false where it cannot be stored, which is recorded.
    template <class T>
    bool record(T &object) {
        const ObjectKind<T> &kind = kKind<T>;
        if (kind.isWhole && !kind.isWhole(mStore, object))
            return false;
        mBorrowed.push_back(std::make_unique<Borrowed>(mStore, &mChanges.recorded()));
        Borrowed &borrowed = *mBorrowed.back();
        borrowed.lend(&object);
        kind.save(borrowed.save());
        return borrowed.save().isGood();
    }
    /// Records what a part of a network is made of that has no objects of its own.
    bool record(const std::function<void(NetContents &)> &fill, void (*save)(NetSave &)) {
        mBorrowed.push_back(std::make_unique<Borrowed>(mStore, &mChanges.recorded()));
        fill(mBorrowed.back()->part());
        save(mBorrowed.back()->save());
        return mBorrowed.back()->save().isGood();
    }
    /// Changes a member of an object that is to be recorded.
    template <class T>
    void set(T &member, const T &value) {
        mBorrowed.push_back(std::make_unique<Borrowed>(mStore, &mChanges.recorded()));
        mBorrowed.back()->save().set(member, value);
    }
    void keep() {
        for (const auto &borrowed : mBorrowed)
            borrowed->save().keep();
    }

private:
    const Store &mStore;
    Changes &mChanges;
    std::vector<std::unique_ptr<Borrowed>> mBorrowed;
};

} // namespace objects
