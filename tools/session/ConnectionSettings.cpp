#include "tools/session/ConnectionSettings.h"

#include "tools/reports/Failure.h"

#include <QFileInfo>

namespace moratools {

ConnectionSettings::ConnectionSettings(const StoreAddress &address) : mAddress(address) {
    for (const StoreAddress::Option &option : address.options()) {
        bool isNumber = false;
        const int number = option.value.toInt(&isNumber);
        if (option.keyword == "port" && isNumber)
            mPort = number;
        else if (option.keyword == "host" || option.keyword == "dbname" || option.keyword == "user" ||
                 option.keyword == "password")
            continue;
        else if (option.variable.isEmpty())
            throw Failure(QStringLiteral("%1: the keyword \"%2\" is not supported; leave it out")
                              .arg(address.name(), QString::fromUtf8(option.keyword)));
        else
            set(option.variable, option.value);
    }
    if (address.isServer() && !qEnvironmentVariableIsSet("PGAPPNAME"))
        set("PGAPPNAME", "morastore");
}

ConnectionSettings::~ConnectionSettings() {
    for (const Variable &variable : qAsConst(mVariables)) {
        if (variable.wasSet)
            qputenv(variable.name.constData(), variable.before);
        else
            qunsetenv(variable.name.constData());
    }
}

void ConnectionSettings::set(const QByteArray &variable, const QByteArray &value) {
    const char *name = variable.constData();
    mVariables.append({variable, qEnvironmentVariableIsSet(name), qgetenv(name)});
    qputenv(name, value);
}

QString ConnectionSettings::driver() const {
    return mAddress.isServer() ? QStringLiteral("QPSQL") : QStringLiteral("QSQLITE");
}

void ConnectionSettings::applyTo(QSqlDatabase &db) const {
    db.setHostName(mAddress.value("host"));
    db.setPort(mPort);
    // An absolute path is never one of the names that SQLite takes for something else.
    db.setDatabaseName(mAddress.isServer() ? mAddress.value("dbname")
                                           : QFileInfo(mAddress.path()).absoluteFilePath());
    db.setUserName(mAddress.value("user"));
    db.setPassword(mAddress.value("password"));
}

StoreSettings ConnectionSettings::ofLibrary() const {
    StoreSettings settings;
    settings.driver = driver();
    settings.host = mAddress.value("host");
    settings.port = mPort;
    // An absolute path is never one of the names that SQLite takes for something else.
    settings.name =
        mAddress.isServer() ? mAddress.value("dbname") : QFileInfo(mAddress.path()).absoluteFilePath();
    settings.user = mAddress.value("user");
    settings.password = mAddress.value("password");
    return settings;
}

} // namespace moratools
