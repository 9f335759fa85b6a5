#include "tools/sumo/import/RefusedInsert.h"

#include "tools/reports/Failure.h"
#include "tools/session/StoreSession.h"

namespace moratools {

void requireWritten(const StoreSession &store, bool done, const char *what) {
    if (done)
        return;
    store.requireServerAlive();
    const QString reason = store.firstFailureText();
    throw Failure(
        QStringLiteral("the store refused the %1 (%2); nothing was imported")
            .arg(QLatin1String(what), reason.isEmpty() ? QStringLiteral("no reason given") : reason));
}

} // namespace moratools
