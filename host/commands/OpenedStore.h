#pragma once

#include "tools/session/StoreSession.h"

namespace commands {

/// The statements that the stores of this run refused.
int refusedStatements();

/// A store that a command works on; what it refused counts.
class OpenedStore : public moratools::StoreSession {
public:
    using moratools::StoreSession::StoreSession;
    ~OpenedStore();
};

} // namespace commands
