#pragma once

#include <QHash>
#include <QSet>
#include <QString>
#include <QStringList>

class QSqlQuery;

namespace moratools {

/// The tables of an SQLite store as they are declared.
struct DeclaredSchema {
    struct Table {
        QString name;
        QStringList columns;   ///< as they are spelled
        QStringList key;       ///< of the primary key, in lower case, sorted
        QSet<QString> numbers; ///< columns of a numeric type, in lower case
    };

    QHash<QString, Table> tables;    ///< by name in lower case
    QHash<QString, QString> indexes; ///< those with a name: their tables, by the name as it is spelled

    /// @{ The statements that tell it, and what they tell.
    static QString columnsQuestion();
    static QString indexesQuestion();
    void takeColumns(QSqlQuery &rows);
    void takeIndexes(QSqlQuery &rows);
    /// @}
};

/// The format of stores of several networks, as the library makes new ones. Throws `Failure` where no temporary
/// file can be made.
const DeclaredSchema &formatSchema();

/// How the format spells a column, whose name may be in upper or lower case: servers know lower case alone, and
/// older generations have spellings of their own. A column that the format does not have keeps its name.
QString formatName(const QString &table, const QString &column);

} // namespace moratools
