#include "store/server/ConnectionWords.h"

#include "model/StoreSettings.h"

#include <QRegularExpression>
#include <QSqlDatabase>
#include <QStringList>

#ifdef MORASTORE_WITH_POSTGRESQL
#include <libpq-fe.h>
#endif

#include <algorithm>
#include <memory>

namespace connectionwords {

namespace {

/// Seconds but for the last, which are milliseconds. What is not acknowledged for as long as the last says ends
/// the connection; where nothing is under way, three questions in 15 + 3 * 10 s do.
constexpr struct {
    const char *keyword;
    const char *value;
} kLimits[] = {{"connect_timeout", "10"},
               {"keepalives_idle", "15"},
               {"keepalives_interval", "10"},
               {"keepalives_count", "3"},
               {"tcp_user_timeout", "45000"}};

#ifdef MORASTORE_WITH_POSTGRESQL

using Options = std::unique_ptr<PQconninfoOption, decltype(&PQconninfoFree)>;

ConnectionWords wordsOf(const Options &options) {
    ConnectionWords words;
    for (const PQconninfoOption *option = options.get(); option && option->keyword; ++option) {
        if (option->val)
            words.append(ConnectionWord{option->keyword, option->val});
    }
    return words;
}

#endif

} // namespace

ConnectionWords parsed(const QString &text) {
#ifdef MORASTORE_WITH_POSTGRESQL
    return wordsOf(Options(PQconninfoParse(text.toUtf8().constData(), nullptr), PQconninfoFree));
#else
    Q_UNUSED(text)
    return {};
#endif
}

// (A pattern's $ would also match before a line break at the end.)
QString spelled(const QByteArray &value) {
    QString text = QString::fromUtf8(value);
    static const QRegularExpression plain(QStringLiteral("\\A[^\\s'\\\\]+\\z"));
    if (plain.match(text).hasMatch())
        return text;
    text.replace(QLatin1Char('\\'), QLatin1String("\\\\")).replace(QLatin1Char('\''), QLatin1String("\\'"));
    return QLatin1Char('\'') + text + QLatin1Char('\'');
}

QString text(const ConnectionWords &words) {
    QStringList parts;
    for (const ConnectionWord &word : words)
        parts.append(QString::fromUtf8(word.keyword) + QLatin1Char('=') + spelled(word.value));
    return parts.join(QLatin1Char(' '));
}

ConnectionWords resolved(const ConnectionWords &given) {
#ifdef MORASTORE_WITH_POSTGRESQL
    // Only the start of a connection looks into service files. A word that libpq refuses ends it after that.
    const ConnectionWords asked = given + ConnectionWords{{"target_session_attrs", "none of them"}};
    const Arrays arrays(asked);
    const std::unique_ptr<PGconn, decltype(&PQfinish)> refused(
        PQconnectStartParams(arrays.keywords.data(), arrays.values.data(), 0), PQfinish);
    ConnectionWords words = of(refused.get());
    for (ConnectionWord &word : words) {
        if (word.keyword == "target_session_attrs")
            word.value = connectionwords::value(given, "target_session_attrs");
    }
    return words;
#else
    return given;
#endif
}

ConnectionWords of(pg_conn *connection) {
#ifdef MORASTORE_WITH_POSTGRESQL
    return wordsOf(Options(PQconninfo(connection), PQconninfoFree));
#else
    Q_UNUSED(connection)
    return {};
#endif
}

ConnectionWords beside(pg_conn *connection) {
    ConnectionWords words = of(connection);
#ifdef MORASTORE_WITH_POSTGRESQL
    const auto isOfPlace = [](const ConnectionWord &word) {
        return word.keyword == "host" || word.keyword == "hostaddr" || word.keyword == "port" ||
               word.keyword == "target_session_attrs" || word.keyword == "options";
    };
    words.erase(std::remove_if(words.begin(), words.end(), isOfPlace), words.end());
    const QByteArray host = PQhost(connection);
    words.append(ConnectionWord{"host", host});
    words.append(ConnectionWord{"port", PQport(connection)});
    if (!host.startsWith('/'))
        words.append(ConnectionWord{"hostaddr", PQhostaddr(connection)});
#endif
    return words;
}

Arrays::Arrays(const ConnectionWords &words) {
    for (const ConnectionWord &word : words) {
        keywords.push_back(word.keyword.constData());
        values.push_back(word.value.constData());
    }
    keywords.push_back(nullptr);
    values.push_back(nullptr);
}

QByteArray value(const ConnectionWords &words, const char *keyword) {
    const auto found = std::find_if(words.cbegin(), words.cend(),
                                    [keyword](const auto &word) { return word.keyword == keyword; });
    return found == words.cend() ? QByteArray() : found->value;
}

ConnectionWords withLimits(const ConnectionWords &given) {
    const ConnectionWords all = resolved(given);
    ConnectionWords words = given;
    for (const auto &limit : kLimits) {
        if (value(all, limit.keyword).isEmpty())
            words.append(ConnectionWord{limit.keyword, limit.value});
    }
    return words;
}

void nameStore(QSqlDatabase &db, const StoreSettings &settings) {
    db.setHostName(settings.host);
    db.setPort(settings.port);
    db.setDatabaseName(settings.name);
    db.setUserName(settings.user);
    db.setPassword(settings.password);
    if (settings.driver == QLatin1String("QPSQL"))
        db.setConnectOptions(text(withLimits(parsed(settings.options))));
}

} // namespace connectionwords
