#include "tests/support/StoreText.h"

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QVariant>
#include <gtest/gtest.h>

namespace {

const QString kReader = QStringLiteral("store text");

/// A connection of its own to a store.
class Reader {
public:
    explicit Reader(const QString &path) {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), kReader);
        db.setDatabaseName(path);
        EXPECT_TRUE(db.open()) << qPrintable(path);
    }
    ~Reader() { QSqlDatabase::removeDatabase(kReader); }
    Reader(const Reader &) = delete;
    Reader &operator=(const Reader &) = delete;

    /// The rows of a statement, their values joined by "|".
    QStringList rows(const QString &sql) const {
        QSqlQuery query(QSqlDatabase::database(kReader));
        query.setForwardOnly(true);
        EXPECT_TRUE(query.exec(sql)) << qPrintable(sql + QStringLiteral(": ") + query.lastError().text());
        QStringList result;
        while (query.next()) {
            QStringList values;
            for (int i = 0; i < query.record().count(); ++i)
                values.append(query.value(i).toString());
            result.append(values.join(QLatin1Char('|')));
        }
        return result;
    }

    QStringList tables() const {
        return rows(QStringLiteral("select name from sqlite_master where type = 'table' order by name"));
    }

    /// Every row of @p table as SQL literals, which tell NULL, texts, numbers and bytes apart.
    QStringList literalRows(const QString &table, const QString &condition = {}) const {
        const QString columns =
            rows(QStringLiteral("select group_concat('quote(\"' || name || '\")', ' || ''|'' || ') "
                                "from pragma_table_info('%1')")
                     .arg(table))
                .first();
        return rows(
            QStringLiteral("select '%1: ' || %2 from \"%1\" %3 order by 1").arg(table, columns, condition));
    }

    QStringList catalogue() const {
        return rows(QStringLiteral(
            "select sql || ';' from sqlite_master where sql is not null order by type desc, name"));
    }
};

} // namespace

QStringList catalogueOf(const QString &path) {
    const Reader store(path);
    return store.catalogue() + store.literalRows(QStringLiteral("IDGenerater"));
}

QStringList contentOf(const QString &path) {
    const Reader store(path);
    QStringList content = store.catalogue();
    for (const QString &table : store.tables())
        content += store.literalRows(table);
    return content;
}

QStringList contentOfNetwork(const QString &path, long netId) {
    const Reader store(path);
    QStringList content;
    for (const QString &table : store.tables()) {
        const QString column =
            store
                .rows(
                    QStringLiteral("select count(*) from pragma_table_info('%1') where lower(name) = 'netid'")
                        .arg(table))
                .first();
        if (column != QLatin1String("0"))
            content += store.literalRows(table, QStringLiteral("where NetId = %1").arg(netId));
    }
    return content;
}

QString integrityOf(const QString &path) {
    return Reader(path).rows(QStringLiteral("pragma integrity_check")).join(QLatin1Char('\n'));
}
