#include "tools/session/ServerFailure.h"

#include "tools/reports/Failure.h"

#include <QRegularExpression>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlQuery>

namespace moratools {

namespace {

/// The SQLSTATE, all of it or its class (https://www.postgresql.org/docs/15/errcodes-appendix.html), and what
/// the user is told; the server's words fill the gap. Of several that fit the first counts.
constexpr struct {
    const char *code;
    const char *sentence;
} kTroubles[] = {
    {"42501", "the user has no right to do this (%1); ask the owner of the store to grant it"},
    {"57014",
     "the server broke a statement off (%1); try again when it has less to do, or raise its time-out"},
    {"55P03", "another program holds what is needed (%1); try again when it has finished"},
    {"40", "another program was in the way (%1); try again"},
    {"25006", "the server takes no changes (%1); use the server that it is a copy of"},
    {"53100", "the disk of the server is full (%1); make room there and try again"},
    {"53", "the server lacks means (%1); try again when it has less to do"},
    {"58", "the server cannot use its files (%1); ask its administrator"},
    // What a server says of another one that it asks for a part of the store.
    {"08", "a server that holds a part of the store does not answer (%1); try again when it runs"},
    {"HV", "a server that holds a part of the store does not answer (%1); try again when it runs"},
};

QString named(const QString &store, const QString &sentence) {
    return store.isEmpty() ? sentence : QStringLiteral("%1: %2").arg(store, sentence);
}

} // namespace

QString lostConnection(const QString &store) {
    return named(store, QStringLiteral("the connection to the server is lost, and nothing was changed; try "
                                       "again when the server runs"));
}

void requireServer(const QString &code, const QString &text, const QString &store) {
    // An administrator stops the server or ends the session.
    if (code.startsWith(QLatin1String("57P0")))
        throw Failure(lostConnection(store));
    for (const auto &trouble : kTroubles) {
        if (!code.startsWith(QLatin1String(trouble.code)))
            continue;
        // The first line, without its "ERROR:", which is in the server's language.
        static const QRegularExpression severity(QStringLiteral("\\A\\p{Lu}+:\\s+"));
        const QString reason = text.section(QLatin1Char('\n'), 0, 0).remove(severity);
        throw Failure(named(store, QString::fromLatin1(trouble.sentence).arg(reason.simplified()) +
                                       QStringLiteral(". Nothing was changed")));
    }
}

void requireServer(const QSqlQuery &failed, const QString &store) {
    const QSqlError error = failed.lastError();
    if (!failed.driver() || failed.driver()->dbmsType() != QSqlDriver::PostgreSQL || !error.isValid())
        return;
    if (error.nativeErrorCode().isEmpty())
        throw Failure(lostConnection(store));
    requireServer(error.nativeErrorCode(), error.databaseText(), store);
}

} // namespace moratools
