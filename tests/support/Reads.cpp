#include "tests/support/Reads.h"

#include "store/DBTools.h"
#include "tests/support/StatementTrace.h"

#include <sqlite3.h>

Reads::Reads() {
    sqlite3_set_authorizer(engineOf(gDB), onRead, this);
}

Reads::Reads(std::string denied) : Reads() {
    mDenied = std::move(denied);
}

Reads::~Reads() {
    sqlite3_set_authorizer(engineOf(gDB), nullptr, nullptr);
}

int Reads::onRead(void *self, int action, const char *name, const char *, const char *, const char *) {
    auto *reads = static_cast<Reads *>(self);
    if ((action != SQLITE_READ && action != SQLITE_PRAGMA) || !name)
        return SQLITE_OK;
    const std::string table = action == SQLITE_PRAGMA ? "a pragma" : name;
    reads->mTables.insert(table);
    return table == reads->mDenied ? SQLITE_DENY : SQLITE_OK;
}
