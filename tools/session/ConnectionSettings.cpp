#include "tools/session/ConnectionSettings.h"

#include "store/server/ConnectionWords.h"
#include "tools/reports/Failure.h"

#include <QFileInfo>

namespace moratools {

StoreSettings connectionSettings(const StoreAddress &address) {
    StoreSettings settings;
    settings.driver = address.isServer() ? QStringLiteral("QPSQL") : QStringLiteral("QSQLITE");
    settings.host = address.value("host");
    // An absolute path is never one of the names that SQLite takes for something else.
    settings.name =
        address.isServer() ? address.value("dbname") : QFileInfo(address.path()).absoluteFilePath();
    settings.user = address.value("user");
    settings.password = address.value("password");
    bool isOnePort = false;
    const int port = address.value("port").toInt(&isOnePort);
    settings.port = isOnePort ? port : -1;
    ConnectionWords others{{"fallback_application_name", "morastore"}};
    for (const StoreAddress::Option &option : address.options()) {
        if (option.keyword == "host" || option.keyword == "dbname" || option.keyword == "user" ||
            option.keyword == "password" || (option.keyword == "port" && isOnePort))
            continue;
        if (option.value.contains(';'))
            throw Failure(QStringLiteral("%1: the value of \"%2\" has a semicolon, which cannot be passed on "
                                         "from here; put it into a service file")
                              .arg(address.name(), QString::fromUtf8(option.keyword)));
        others.append(ConnectionWord{option.keyword, option.value});
    }
    if (address.isServer())
        settings.options = connectionwords::text(others);
    return settings;
}

} // namespace moratools
