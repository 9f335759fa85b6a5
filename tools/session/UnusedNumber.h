#pragma once

namespace moratools {

class StoreSession;

/// The number of a new network: `number`, or the first after it that no row has. Only rows on another server
/// can have the number of a network without a record: a commit that came through there and not here left
/// them (tidyPartitions()). Throws `Failure` when that server does not answer.
long unusedNumber(const StoreSession &store, long number);

} // namespace moratools
