#include "store/guard/PlainTable.h"

#include "store/guard/SqlTokens.h"

#include <algorithm>

namespace plaintable {

namespace {

using sqltokens::Token;
using Tokens = QVector<Token>;

bool follow(const Tokens &tokens, int at, std::initializer_list<const char *> words) {
    return at >= 0 && at + int(words.size()) <= tokens.size() &&
           std::equal(words.begin(), words.end(), tokens.begin() + at,
                      [](const char *word, const Token &token) { return token.is(word); });
}

/// A default in parentheses is an expression; one of a single number or text is none to speak of.
bool isComputed(const Tokens &tokens, int behindDefault) {
    if (!follow(tokens, behindDefault, {"("}))
        return false;
    for (int at = behindDefault + 1; at < tokens.size() && !tokens.at(at).is(")"); ++at) {
        const Token &token = tokens.at(at);
        const bool isConstant = token.kind == Token::Kind::Quoted || token.kind == Token::Kind::Number ||
                                token.is("+") || token.is("-") || token.is(".") || token.is("NULL");
        if (!isConstant)
            return true;
    }
    return false;
}

/// The column that an upgrade gives to Link carries the only conflict clause of the format.
bool isClauseOfTheFormat(const Tokens &tokens, int at) {
    return follow(tokens, at - 4,
                  {"NETID", "BIGINT", "NOT", "NULL", "ON", "CONFLICT", "IGNORE", "DEFAULT", "0"});
}

QString oddityOfTable(const Tokens &tokens) {
    if (!follow(tokens, 0, {"CREATE", "TABLE"}))
        return QStringLiteral("virtual table");
    for (int at = 0; at < tokens.size(); ++at) {
        // Both words are reserved: nothing is called by them.
        if (tokens.at(at).is("CHECK"))
            return QStringLiteral("check");
        if (tokens.at(at).is("AS"))
            return QStringLiteral("generated column");
        if (tokens.at(at).is("DEFAULT") && isComputed(tokens, at + 1))
            return QStringLiteral("computed default");
        if (follow(tokens, at, {"ON", "CONFLICT"}) && !isClauseOfTheFormat(tokens, at))
            return QStringLiteral("conflict clause");
    }
    return {};
}

/// Columns stand between parentheses, with commas, an order and a collation.
QString oddityOfIndex(const Tokens &tokens) {
    int at = 0;
    while (at < tokens.size() && !tokens.at(at).is("("))
        ++at;
    bool startsColumn = true;
    for (++at; at < tokens.size() && !tokens.at(at).is(")"); ++at) {
        const Token &token = tokens.at(at);
        const bool isName = token.kind == Token::Kind::Word || token.kind == Token::Kind::Quoted;
        const bool isOrder =
            token.is("ASC") || token.is("DESC") || token.is("COLLATE") || tokens.at(at - 1).is("COLLATE");
        if (startsColumn ? !isName : !token.is(",") && !isOrder)
            return QStringLiteral("expression index");
        startsColumn = token.is(",");
    }
    return at + 1 < tokens.size() ? QStringLiteral("partial index") : QString();
}

} // namespace

QString oddityOf(const QString &type, const QString &sql) {
    if (type == QLatin1String("table"))
        return oddityOfTable(sqltokens::of(sql));
    if (type == QLatin1String("index"))
        return sql.isEmpty() ? QString() : oddityOfIndex(sqltokens::of(sql));
    return type;
}

} // namespace plaintable
