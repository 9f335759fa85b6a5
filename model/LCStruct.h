#pragma once

/// A pair of lanes that a route may use on a connector.
struct LCStruct {
    long laneID1 = 0;
    long laneID2 = 0;
};
