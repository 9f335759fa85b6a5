#pragma once

#include "store/core/Store.h"

#include <QList>

struct Logger;

/// The usage log: events of the host and of its plug-ins, in table Logger.
namespace usagelog {

/// Appends an event of the store's network, filling in what it leaves empty. A failure is recorded and ends
/// nothing: a transaction of the caller's goes on.
bool appendEvent(const Store &store, Logger event);

/// Appends the newest @p limit events of the store's network to @p events, newest first; all when @p limit is
/// not positive.
bool readEvents(const Store &store, QList<Logger> &events, int limit);

} // namespace usagelog
