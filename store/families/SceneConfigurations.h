#pragma once

#include "model/Configuration.h"
#include "store/core/Store.h"

class NetLoad;
class NetSave;

/// How the scene of a network is shown: one row a network.
namespace sceneconfigurations {

/// Writes @p configuration in place of the network's row.
bool saveSceneConfiguration(const Store &store, const Configuration &configuration, bool useTransaction);
bool insertSceneConfiguration(const Store &store, const Configuration &configuration);
bool updateShowGrid(const Store &store, bool shown, bool useTransaction);
bool updateShowBackgroundMap(const Store &store, bool shown, bool useTransaction);
bool readSceneConfiguration(const Store &store, Configuration &configuration);

void loadAllSceneConfigurations(NetLoad &net);
void saveAllSceneConfigurations(NetSave &net);

} // namespace sceneconfigurations
