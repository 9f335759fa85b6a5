#pragma once

#include "model/StoreSettings.h"
#include "tools/session/StoreAddress.h"

namespace moratools {

/// The settings of Qt's driver for a store. Throws `Failure` for what the driver cannot pass on.
StoreSettings connectionSettings(const StoreAddress &address);

} // namespace moratools
