#include "store/guard/SqlTokens.h"

namespace sqltokens {

namespace {

/// The closing sign of a quotation; a null character for one that opens none.
QChar closing(QChar opening) {
    if (opening == QLatin1Char('['))
        return QLatin1Char(']');
    const bool isQuote =
        opening == QLatin1Char('\'') || opening == QLatin1Char('"') || opening == QLatin1Char('`');
    return isQuote ? opening : QChar();
}

bool isWordCharacter(QChar character) {
    return character.isLetterOrNumber() || character == QLatin1Char('_') || character == QLatin1Char('$') ||
           character.unicode() > 0x7f;
}

/// The place behind @p end, looked for from @p from; the end of the text where there is none.
int behind(const QString &sql, const QString &end, int from) {
    const int found = sql.indexOf(end, from);
    return found < 0 ? sql.size() : found + end.size();
}

} // namespace

// https://www.sqlite.org/lang_keywords.html and lang_comment.html
QVector<Token> of(const QString &sql) {
    QVector<Token> tokens;
    int at = 0;
    while (at < sql.size()) {
        const int start = at;
        const QChar first = sql.at(at);
        const QStringRef pair = sql.midRef(at, 2);
        if (first.isSpace()) {
            ++at;
        } else if (pair == QLatin1String("--")) {
            at = behind(sql, QStringLiteral("\n"), at);
        } else if (pair == QLatin1String("/*")) {
            at = behind(sql, QStringLiteral("*/"), at + 2);
        } else if (!closing(first).isNull()) {
            // A doubled quote makes two quotations of one, which matters to nobody here.
            at = behind(sql, closing(first), at + 1);
            tokens.append({Token::Kind::Quoted, sql.mid(start, at - start)});
        } else if (isWordCharacter(first)) {
            while (at < sql.size() && isWordCharacter(sql.at(at)))
                ++at;
            tokens.append({first.isDigit() ? Token::Kind::Number : Token::Kind::Word,
                           sql.mid(start, at - start).toUpper()});
        } else {
            ++at;
            tokens.append({Token::Kind::Sign, QString(first)});
        }
    }
    return tokens;
}

} // namespace sqltokens
