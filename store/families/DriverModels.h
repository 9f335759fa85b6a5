#pragma once

#include "model/ChangeLaneModelParam.h"
#include "model/DriveFollowedModelParam.h"
#include "store/core/Store.h"

class NetLoad;
class NetSave;

/// Coefficient sets of the driver models: car following and lane changing.
namespace drivermodels {

bool insert(const Store &store, const DriveFollowedModelParam &param);
bool save(const Store &store, const DriveFollowedModelParam &param, bool useTransaction);
bool read(const Store &store, DriveFollowedModelParam &first, DriveFollowedModelParam &second);

bool insertAll(const Store &store, const QList<ChangeLaneModelParam> &params);
/// Writes @p params in place of all stored sets.
bool saveAll(const Store &store, const QList<ChangeLaneModelParam> &params, bool useTransaction);
bool readAll(const Store &store, QList<ChangeLaneModelParam> &params);

void load(NetLoad &net);
void save(NetSave &net);

} // namespace drivermodels
