#pragma once

#include <QList>
#include <QString>

/// A statement of an SQL file.
struct Statement {
    QString text;
    int line; ///< where it starts, counted from 1
};

/// The statements of the file @p path. A statement ends with a semicolon at the end of a line, and comes
/// without it; a comment is a line of its own that starts with "--", and is left out.
/// @throws std::runtime_error when the file cannot be read or its last statement does not end.
QList<Statement> readStatements(const QString &path);

/// The lines of the file @p path.
/// @throws std::runtime_error when it cannot be read.
QStringList readLines(const QString &path);
