#pragma once

namespace moratools {

class StoreSession;

/// Throws a `Failure` with the store's reason unless an insert is `done`; `what` are the objects to write.
void requireWritten(const StoreSession &store, bool done, const char *what);

} // namespace moratools
