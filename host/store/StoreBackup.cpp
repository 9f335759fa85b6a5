#include "host/store/StoreBackup.h"

#include "host/Failure.h"
#include "host/store/FileInMaking.h"

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QStringList>
#include <QVariant>

namespace {

/// A connection of its own to an SQLite file.
class Connection {
public:
    Connection(const char *name, const QString &path) : mName(QLatin1String(name)) {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), mName);
        db.setDatabaseName(path);
        db.open();
    }
    ~Connection() { QSqlDatabase::removeDatabase(mName); }

    /// Executes a statement. Throws `Failure`.
    QSqlQuery run(const QString &sql) const {
        QSqlQuery query(QSqlDatabase::database(mName));
        if (!query.exec(sql))
            throw Failure(query.lastError().databaseText());
        return query;
    }

private:
    Q_DISABLE_COPY(Connection)

    QString mName;
};

QString literal(QString text) {
    return QLatin1Char('\'') + text.replace(QLatin1Char('\''), QLatin1String("''")) + QLatin1Char('\'');
}

/// What the copy must have in common with the store: every table and index by the text that creates it, and
/// the number of rows of every table. SQLite's own tables are its own affair.
QStringList contentsOf(const Connection &store) {
    QStringList contents;
    QSqlQuery entries =
        store.run(QStringLiteral("select type, name, sql from sqlite_master where name not like 'sqlite\\_%' "
                                 "escape '\\' order by type, name"));
    while (entries.next()) {
        QString name = entries.value(1).toString();
        contents.append(entries.value(0).toString() + QLatin1Char(' ') + entries.value(2).toString());
        if (entries.value(0) != QLatin1String("table"))
            continue;
        QSqlQuery count = store.run(QStringLiteral("select count(*) from \"%1\"")
                                        .arg(name.replace(QLatin1Char('"'), QLatin1String("\"\""))));
        count.next();
        contents.append(count.value(0).toString());
    }
    return contents;
}

void copyAndCheck(const QString &path, const QString &copy) {
    const Connection source("morastore-copied", path);
    source.run(QStringLiteral("vacuum into ") + literal(copy));
    const Connection written("morastore-copy", copy);
    QSqlQuery check = written.run(QStringLiteral("pragma integrity_check"));
    check.next();
    if (check.value(0).toString() != QLatin1String("ok"))
        throw Failure(check.value(0).toString());
    if (contentsOf(written) != contentsOf(source))
        throw Failure(QStringLiteral("it holds something else; another program may be writing to the store"));
}

} // namespace

void backUpStore(const QString &path, const QString &copy) {
    const QString name = copy + QStringLiteral(".new");
    if (QFile::exists(name))
        throw Failure(QStringLiteral("%1: exists already; move it away").arg(name));
    const FileInMaking making(name);
    try {
        copyAndCheck(path, making.path());
    } catch (const Failure &failure) {
        throw Failure(QStringLiteral("%1: the copy cannot be made (%2); check the folder and its disk")
                          .arg(copy, failure.message()));
    }
    // Rename refuses a name that was taken meanwhile.
    if (!QFile::rename(making.path(), copy))
        throw Failure(
            QStringLiteral("%1: the copy cannot be made; check that the folder is writable and the name free")
                .arg(copy));
}
