#include "store/DBTools.h"
#include "store/DBTools_V6.h"

#include <QCoreApplication>
#include <QTextStream>

/// Writes network 1 with its dictionaries to the empty store that is the PostgreSQL database of the usual
/// environment variables (PGHOST, PGPORT, PGDATABASE, PGUSER, PGPASSWORD), for scripts/make-dumps.

namespace {

bool fill() {
    DBTools::mDbDriver = QStringLiteral("QPSQL");
    DBTools::mDbHost = qEnvironmentVariable("PGHOST");
    DBTools::mDbPort = qEnvironmentVariableIntValue("PGPORT");
    DBTools::mDbName = qEnvironmentVariable("PGDATABASE");
    DBTools::mDbUser = qEnvironmentVariable("PGUSER");
    DBTools::mDbPassword = qEnvironmentVariable("PGPASSWORD");
    const QString kind = QStringLiteral("MoraSim");
    return DBTools::openDatabase(gDB, {}, true) &&
           DBTools_V6::insertNet(gDB, 1, kind, {}, kind, {}, QStringLiteral("{}"), true, true) &&
           DBTools::initDictionary(gDB, 1, true) && DBTools::initSequence(gDB, {});
}

} // namespace

int main(int argc, char *argv[]) {
    const QCoreApplication app(argc, argv);
    if (fill())
        return 0;
    for (const CallDbResult &failure : DBTools::mlCallDbResult + DBTools_V6::mlCallDbResult)
        QTextStream(stderr) << failure.sql << '\n' << failure.error << '\n';
    return 1;
}
