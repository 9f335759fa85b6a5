#include "tools/session/StoreBackup.h"

#include "tools/reports/Failure.h"
#include "tools/session/FileInMaking.h"
#include "tools/session/SqliteConnection.h"
#include "tools/session/TextLiteral.h"

#include <QDateTime>
#include <QFileInfo>
#include <QStringList>
#include <QVariant>

namespace moratools {

namespace {

/// What the copy must have in common with the store: every table and index by the text that creates it, and
/// the number of rows of every table. SQLite's own tables are its own affair.
QStringList contentsOf(const SqliteConnection &store) {
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
    const SqliteConnection source(path);
    source.run(QStringLiteral("vacuum into ") + textLiteral(copy));
    const SqliteConnection written(copy);
    written.requireIntegrity();
    if (contentsOf(written) != contentsOf(source))
        throw Failure(QStringLiteral("it holds something else; another program may be writing to the store"));
}

} // namespace

void backUpStore(const QString &path, const QString &copy) {
    FileInMaking making(copy);
    try {
        copyAndCheck(path, making.path());
    } catch (const Failure &failure) {
        throw Failure(QStringLiteral("%1: the copy cannot be made (%2); check the folder and its disk")
                          .arg(copy, failure.message()));
    }
    making.publish();
}

QString keepCopy(const QString &path, const QString &what) {
    const QString absolute = QFileInfo(path).absoluteFilePath();
    const QString now = QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss"));
    const QString ofThisSecond = QStringLiteral("%1.before-%2-%3").arg(absolute, what, now);
    QString name = ofThisSecond;
    for (int number = 2; QFileInfo::exists(name); ++number)
        name = QStringLiteral("%1-%2").arg(ofThisSecond, QString::number(number));
    backUpStore(absolute, name);
    return name;
}

} // namespace moratools
