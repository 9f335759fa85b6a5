#pragma once

#include <QString>
#include <QVector>

/// The words of a statement as SQLite keeps it for a table or an index, without comments and blanks.
namespace sqltokens {

struct Token {
    enum class Kind {
        Word,   ///< a keyword or a plain name, in upper case
        Quoted, ///< a name or a text in quotes
        Number,
        Sign ///< a single character
    };
    Kind kind;
    QString text;

    bool is(const char *word) const { return kind != Kind::Quoted && text == QLatin1String(word); }
};

QVector<Token> of(const QString &sql);

} // namespace sqltokens
