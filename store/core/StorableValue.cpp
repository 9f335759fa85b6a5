#include "store/core/StorableValue.h"

#include <QJsonArray>
#include <QtNumeric>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace storablevalue {

namespace {

QString notFinite() {
    return QStringLiteral("is not a finite number");
}

QString hasNul() {
    return QStringLiteral("contains a NUL character");
}

bool isFinite(const QJsonValue &value) {
    if (value.isDouble())
        return qIsFinite(value.toDouble());
    if (value.isArray()) {
        const QJsonArray array = value.toArray();
        return std::all_of(array.begin(), array.end(),
                           [](const QJsonValue &member) { return isFinite(member); });
    }
    const QJsonObject object = value.toObject();
    return std::all_of(object.begin(), object.end(),
                       [](const QJsonValue &member) { return isFinite(member); });
}

QString hasMark() {
    return QStringLiteral("begins with a byte order mark");
}

bool isMark(QChar c) {
    return c == QChar::ByteOrderMark || c == QChar::ByteOrderSwapped;
}

/// Whether the bytes are one text and no other.
bool isUtf8(const QByteArray &text) {
    const bool isAscii = std::all_of(text.begin(), text.end(), [](char c) { return (c & 0x80) == 0; });
    return isAscii || QString::fromUtf8(text).toUtf8() == text;
}

QString objectionToText(const QString &text, bool mayBeLong) {
    if (text.size() > kLongestText && !mayBeLong)
        return QStringLiteral("is longer than %1 characters").arg(kLongestText);
    if (!text.isEmpty() && isMark(text.at(0)))
        return hasMark();
    bool needsALook = false;
    for (const QChar c : text)
        needsALook |= c.isNull() || c.isSurrogate();
    if (!needsALook)
        return {};
    if (text.contains(QChar::Null))
        return hasNul();
    return text.isValidUtf16() ? QString() : QStringLiteral("is not valid Unicode");
}

} // namespace

bool mayBeLonger(const QString &column) {
    return column.endsWith(QLatin1String("Json"), Qt::CaseInsensitive) ||
           column.compare(QLatin1String("backgroundMap"), Qt::CaseInsensitive) == 0;
}

QString objection(const QVariant &value, bool mayBeLong) {
    switch (value.userType()) {
    case QMetaType::Double:
        return qIsFinite(value.toDouble()) ? QString() : notFinite();
    case QMetaType::LongLong:
        return holdsId(value.toLongLong()) ? QString() : QStringLiteral("is beyond 32 bits");
    case QMetaType::QString:
        return objectionToText(value.toString(), mayBeLong);
    default:
        return {};
    }
}

QString objection(const StoredJson &value, const QByteArray &text, bool asText) {
    if (std::memchr(text.constData(), 0, std::size_t(text.size())))
        return hasNul();
    if (asText && value.hasText()) {
        if (text.startsWith("\xef\xbb\xbf"))
            return hasMark();
        if (!isUtf8(text))
            return QStringLiteral("is not valid UTF-8");
    }
    // Qt writes numbers that JSON does not have as null, so a text without that word needs no second look.
    if (value.hasText() || !text.contains("null") || isFinite(value.object()))
        return {};
    return notFinite();
}

QVariant bound(const QVariant &value, bool isPostgreSql) {
    const bool isNegativeZero =
        value.userType() == QMetaType::Double && value.toDouble() == 0 && std::signbit(value.toDouble());
    return isNegativeZero && isPostgreSql ? QVariant(QStringLiteral("-0")) : value;
}

} // namespace storablevalue
