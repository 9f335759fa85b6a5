#pragma once

#include <QString>
#include <QStringList>

#include <vector>

/// A foreign key of a table.
struct ForeignKey {
    QString text;       ///< "constraint ... foreign key (...) references ..."
    QString references; ///< the table that it refers to
};

/// A piece of the schema: a table, or a line outside of tables.
struct Piece {
    QString line;  ///< outside of tables; empty for a table
    QString table; ///< the table's name, or that of the one which the line makes an index of; empty elsewhere
    /// @{ Of tables alone. Columns, primary key and comments go without commas.
    QStringList columns;
    QString primaryKey;
    std::vector<ForeignKey> keys;
    /// @}

    bool isTable() const { return !columns.isEmpty(); }
    /// Whether the rows belong to networks: the first column is the network's.
    bool isLedByNetwork() const;
    /// The first column's name.
    QString leader() const;
};

/// The schema as PostgreSQL has it, from the text of the SQLite template.
///
/// The text is that of the files but for three things. Types become those that keep what is written
/// bit for bit (kTypes). Foreign keys stand apart, since the server asks for the table that a key refers to.
/// A key that follows a line starting with "-- Not on PostgreSQL:" stays out: the server enforces every key
/// that it has.
/// @throws std::runtime_error when a file cannot be read or a type has none of PostgreSQL's.
std::vector<Piece> postgresqlSchema(const QStringList &files);
