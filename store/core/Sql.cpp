#include "store/core/Sql.h"

#include <algorithm>

namespace {

bool hasPlaceholder(const QString &text) {
    for (int at = text.indexOf(QLatin1Char('%')); at >= 0; at = text.indexOf(QLatin1Char('%'), at + 1)) {
        if (at + 1 < text.size() && text.at(at + 1).isDigit())
            return true;
    }
    return false;
}

} // namespace

QString fillNumber(const QString &text, long value) {
    // QString::arg() would print a warning for the text that has no place left.
    return hasPlaceholder(text) ? text.arg(value) : text;
}

QString fillNumbers(const QString &text, std::initializer_list<long> values) {
    QString filled = text;
    for (const long value : values)
        filled = fillNumber(filled, value);
    return filled;
}

QString quoted(const QString &text) {
    QString result = text;
    result.replace(QLatin1Char('\''), QLatin1String("''"));
    return result;
}

QString identifierAsStored(const QString &name) {
    QString result = name;
    return QLatin1Char('"') + result.replace(QLatin1Char('"'), QLatin1String("\"\"")) + QLatin1Char('"');
}

QString identifier(const QString &name) {
    const auto isPlain = [](QChar c) {
        return c == QLatin1Char('_') || (c.unicode() < 128 && c.isLetterOrNumber());
    };
    const bool isOrdinary =
        !name.isEmpty() && !name.front().isDigit() && std::all_of(name.cbegin(), name.cend(), isPlain);
    return isOrdinary ? name : identifierAsStored(name);
}
