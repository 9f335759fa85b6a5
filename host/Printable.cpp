#include "host/Printable.h"

namespace printable {

namespace {

bool isBreak(QChar character) {
    return character == QLatin1Char('\n') || character == QLatin1Char('\t');
}

/// Controls, C0 and C1 with DEL; line and paragraph separator; what changes the direction of a line
/// (https://www.unicode.org/reports/tr9/, 2). The marks that only say what direction a neighbour has are
/// ordinary text of the languages that need them.
bool isControl(QChar character) {
    const ushort code = character.unicode();
    return code < 0x20 || (code >= 0x7f && code < 0xa0) || code == 0x2028 || code == 0x2029 ||
           (code >= 0x202a && code <= 0x202e) || (code >= 0x2066 && code <= 0x2069);
}

QString number(const char *prefix, QChar character, int digits) {
    return QLatin1String(prefix) +
           QString::number(character.unicode(), 16).rightJustified(digits, QLatin1Char('0'));
}

QString spelled(QChar character) {
    if (character == QLatin1Char('\n'))
        return QStringLiteral("\\n");
    if (character == QLatin1Char('\t'))
        return QStringLiteral("\\t");
    if (character == QLatin1Char('\r'))
        return QStringLiteral("\\r");
    return character.unicode() < 0x100 ? number("\\x", character, 2) : number("\\u", character, 4);
}

template <class Keeps, class Spelling>
QString replaced(const QString &text, const Keeps &isKept, const Spelling &spelling) {
    QString result;
    result.reserve(text.size());
    for (const QChar character : text) {
        if (isControl(character) && !isKept(character))
            result += spelling(character);
        else
            result += character;
    }
    return result;
}

} // namespace

QString line(const QString &text) {
    return replaced(
        text, [](QChar) { return false; }, spelled);
}

QString lines(const QString &text) {
    return replaced(text, isBreak, spelled);
}

QString json(const QString &text) {
    // Breaks stand between values only; inside of texts JSON has its own words for them.
    return replaced(text, isBreak, [](QChar character) { return number("\\u", character, 4); });
}

} // namespace printable
