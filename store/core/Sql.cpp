#include "store/core/Sql.h"

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
