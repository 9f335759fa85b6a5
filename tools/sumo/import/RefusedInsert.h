#pragma once

namespace moratools {

/// Throws a `Failure` with the store's reason unless an insert is `done`; `what` are the objects to write.
void requireWritten(bool done, const char *what);

} // namespace moratools
