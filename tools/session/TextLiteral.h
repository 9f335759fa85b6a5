#pragma once

#include <QString>

namespace moratools {

/// `text` as a literal of a statement, in single quotes.
inline QString textLiteral(const QString &text) {
    return QLatin1Char('\'') + QString(text).replace(QLatin1Char('\''), QLatin1String("''")) +
           QLatin1Char('\'');
}

} // namespace moratools
