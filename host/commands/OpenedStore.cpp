#include "host/commands/OpenedStore.h"

namespace commands {

namespace {

int refused = 0;

} // namespace

int refusedStatements() {
    return refused;
}

OpenedStore::~OpenedStore() {
    refused += unexpectedFailures();
}

} // namespace commands
