#pragma once

#include "model/ChangeLaneModelParam.h"
#include "model/DriveFollowedModelParam.h"
#include "store/core/Store.h"

class NetLoad;
class NetSave;

/// Coefficient sets of the driver models: car following and lane changing.
namespace drivermodels {

bool insertFollowedModelParam(const Store &store, const DriveFollowedModelParam &param);
bool saveFollowedModelParam(const Store &store, const DriveFollowedModelParam &param, bool useTransaction);
bool readFollowedModelParams(const Store &store, DriveFollowedModelParam &first,
                             DriveFollowedModelParam &second);

bool insertChangeLaneParams(const Store &store, const QList<ChangeLaneModelParam> &params);
/// Writes @p params in place of all stored sets.
bool saveChangeLaneParams(const Store &store, const QList<ChangeLaneModelParam> &params, bool useTransaction);
bool readChangeLaneParams(const Store &store, QList<ChangeLaneModelParam> &params);

void loadAllDriverModels(NetLoad &net);
void saveAllDriverModels(NetSave &net);

} // namespace drivermodels
