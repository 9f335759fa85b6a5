#include "tools/session/Partitions.h"

#include "tools/reports/Failure.h"
#include "tools/session/Server.h"

#include <QFile>

namespace moratools::partitions {

namespace {

/// A text that the library carries.
QString carried(const char *name) {
    QFile file(QStringLiteral(":/Resources/Partitions/%1.sql").arg(QLatin1String(name)));
    if (!file.open(QIODevice::ReadOnly))
        throw Failure(QStringLiteral("the template %1 cannot be read (%2)")
                          .arg(QLatin1String(name), file.errorString()));
    return QString::fromUtf8(file.readAll());
}

/// The tables that SQL names are looked for in another schema while this object is there.
class InSchema {
public:
    InSchema(Server &server, const QString &schema)
        : mServer(server), mBefore(server.value(QStringLiteral("show search_path"))) {
        mServer.run(QStringLiteral("set local search_path = %1").arg(schema));
    }
    /// Not in a destructor: a transaction that failed takes the setting back by itself.
    void end() { mServer.run(QStringLiteral("set local search_path = %1").arg(mBefore)); }

private:
    Server &mServer;
    QString mBefore;
};

} // namespace

QString schemaOf(int partition) {
    return QStringLiteral("part_%1").arg(partition);
}

void makeLeaves(Server &server, const QString &schema) {
    server.run(QStringLiteral("create schema %1").arg(schema));
    InSchema leaves(server, schema);
    server.run(carried("leaves"));
    leaves.end();
}

void attachLeaves(Server &server, int partition, int count) {
    const QString store = server.value(QStringLiteral("select quote_ident(current_schema())"));
    const QString attachments =
        QStringLiteral("select string_agg(format('alter table %1.%I attach partition %2.%I for values with "
                       "(modulus %3, remainder %4)', relname, relname), ';') from pg_class where relkind = "
                       "'p' and relnamespace = current_schema()::regnamespace");
    QString attach = attachments;
    attach.replace(QLatin1String("%1"), store)
        .replace(QLatin1String("%2"), schemaOf(partition))
        .replace(QLatin1String("%3"), QString::number(count))
        .replace(QLatin1String("%4"), QString::number(partition));
    server.run(server.value(attach));
    InSchema leaves(server, schemaOf(partition));
    server.run(carried("net_keys").replace(QLatin1String("{store}"), store));
    leaves.end();
}

void makeStore(Server &server, int count) {
    server.run(carried("parents"));
    for (int partition = 0; partition < count; ++partition) {
        makeLeaves(server, schemaOf(partition));
        attachLeaves(server, partition, count);
    }
}

} // namespace moratools::partitions
