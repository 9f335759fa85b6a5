#pragma once

#include "model/MoraStoreExport.h"

#include <QString>

namespace probes {

/// Why a store of @p version is not used; empty for a version that this release knows.
MORASTORE_EXPORT QString refusalOfVersion(qint64 version);

} // namespace probes
