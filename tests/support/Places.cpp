#include "tests/support/Places.h"

// Only this source knows where the tree and the build are: the others compile alike in every clone.
QString sourceFolder() {
    return QStringLiteral(MORASTORE_SOURCE_DIR);
}

QString postgresqlText() {
    return QStringLiteral(MORASTORE_POSTGRESQL_TEXT);
}

QString morastoreProgram() {
    return QStringLiteral(MORASTORE_PROGRAM);
}

QString killedMorastoreProgram() {
    return QStringLiteral(MORASTORE_KILLED);
}
