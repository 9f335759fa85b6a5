#include "tools/session/StoreAddress.h"

#include "store/server/ConnectionWords.h"
#include "tools/reports/Failure.h"

#include <QRegularExpression>

#include <libpq-fe.h>

#include <algorithm>
#include <memory>

namespace moratools {

namespace {

using Options = std::unique_ptr<PQconninfoOption, decltype(&PQconninfoFree)>;

bool isKeyword(const QString &word) {
    const Options known(PQconndefaults(), PQconninfoFree);
    for (const PQconninfoOption *option = known.get(); option && option->keyword; ++option) {
        if (word == QLatin1String(option->keyword))
            return true;
    }
    return false;
}

/// "KEYWORD=..." with at least one keyword that libpq knows, or an address with its scheme.
bool isConnectionString(const QString &text) {
    if (text.startsWith(QLatin1String("postgresql://")) || text.startsWith(QLatin1String("postgres://")))
        return true;
    static const QRegularExpression first(QStringLiteral("^\\s*\\w+\\s*="));
    static const QRegularExpression pair(QStringLiteral("(?:^|\\s)(\\w+)\\s*="));
    if (!first.match(text).hasMatch())
        return false;
    auto pairs = pair.globalMatch(text);
    while (pairs.hasNext()) {
        if (isKeyword(pairs.next().captured(1)))
            return true;
    }
    return false;
}

} // namespace

StoreAddress::StoreAddress(const QString &text) : mIsServer(isConnectionString(text)), mName(text) {
    if (text.isEmpty())
        throw Failure(QStringLiteral("the name of the store is empty; give the path of a file, or the "
                                     "connection string of a database"));
    if (!mIsServer)
        return;
    const Options parsed(PQconninfoParse(text.toUtf8().constData(), nullptr), PQconninfoFree);
    if (!parsed)
        throw Failure(
            QStringLiteral("the connection string cannot be understood; give keywords as in "
                           "\"dbname=... host=... user=...\", values with blanks in single quotes"));
    for (const PQconninfoOption *option = parsed.get(); option->keyword; ++option) {
        if (!option->val)
            continue;
        const bool isSecret = option->dispchar && *option->dispchar == '*';
        mOptions.append({option->keyword, option->val, option->envvar, isSecret});
    }
    nameServer();
}

void StoreAddress::nameServer() {
    // What tells databases apart comes first.
    const auto rank = [](const Option &option) {
        const QList<QByteArray> first{"service", "dbname", "host", "port", "user"};
        const int index = first.indexOf(option.keyword);
        return index < 0 ? first.size() : index;
    };
    std::stable_sort(mOptions.begin(), mOptions.end(),
                     [&rank](const Option &a, const Option &b) { return rank(a) < rank(b); });
    ConnectionWords words;
    for (const Option &option : qAsConst(mOptions)) {
        if (!option.isSecret)
            words.append(ConnectionWord{option.keyword, option.value});
    }
    mName = connectionwords::text(words);
}

QString StoreAddress::value(const char *keyword) const {
    for (const Option &option : mOptions) {
        if (option.keyword == keyword)
            return QString::fromUtf8(option.value);
    }
    return {};
}

StoreAddress StoreAddress::withDatabase(const QString &name) const {
    StoreAddress address = *this;
    for (Option &option : address.mOptions) {
        if (option.keyword == "dbname") {
            option.value = name.toUtf8();
            address.nameServer();
            return address;
        }
    }
    address.mOptions.append({"dbname", name.toUtf8(), "PGDATABASE", false});
    address.nameServer();
    return address;
}

} // namespace moratools
