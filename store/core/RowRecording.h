#pragma once

#include <QHash>
#include <QObject>
#include <QString>

/// What keeps the rows that operations add, change and remove on a PostgreSQL connection: each statement that
/// writes also writes its rows into a table beside the one that it is about. What the engine takes back of the
/// one it takes back of the other. Ends with the driver that it is a child of.
class RowRecording : public QObject {
public:
    /// @param tables the tables beside, by the lower case name of those that they are about: a flag that says
    ///        whether a row is one that came, followed by the columns of the table in their order.
    /// @param condition which rows are kept: "NetId = 1"; empty for all.
    RowRecording(QHash<QString, QString> tables, QString condition, QObject *parent);

    /// The statement that does what @p sql does and keeps the rows; @p sql itself where it writes to none of
    /// the tables. Placeholders keep their names, or their order.
    QString statement(const QString &sql) const;

private:
    QString kept(const QString &table, const char *rows, bool areThose) const;

    QHash<QString, QString> mTables;
    QString mCondition;
};
