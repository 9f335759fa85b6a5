#pragma once

#include "model/MoraStoreExport.h"

#include <QString>

namespace probes {

/// Whether stores of @p version hold several networks.
constexpr bool hasSeveralNets(qint64 version) {
    return version >= 6;
}

/// Why a store of @p version is not used; empty for a version that this release knows.
MORASTORE_EXPORT QString refusalOfVersion(qint64 version);

} // namespace probes
