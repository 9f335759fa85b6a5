#include "tools/rows/RowValue.h"

#include <QDateTime>
#include <QTextCodec>
#include <QtEndian>

#include <cmath>
#include <cstring>

namespace moratools {

namespace rowvalue {

namespace {

bool isIntegral(double number) {
    return std::abs(number) < 9.2e18 && std::trunc(number) == number;
}

/// The day of an ISO date or date and time; the text itself when it is neither.
QString dayOf(const QString &text) {
    constexpr int length = 10; // yyyy-MM-dd
    const QString day = text.left(length);
    const bool ends =
        text.size() == length || text.at(length) == QLatin1Char('T') || text.at(length) == QLatin1Char(' ');
    return text.size() >= length && ends && QDate::fromString(day, Qt::ISODate).isValid() ? day : text;
}

/// Whether a text comes back as it is written. SQLite, which is given UTF-16, takes a leading byte order mark
/// off; a server's texts end at the first NUL.
bool isKept(const QString &text, bool isSqlite) {
    if (!text.isValidUtf16())
        return false;
    if (!isSqlite)
        return !text.contains(QChar::Null);
    return text.isEmpty() || (text.at(0) != QChar::ByteOrderMark && text.at(0) != QChar::ByteOrderSwapped);
}

bool toText(QVariant &value, bool isSqlite) {
    if (value.userType() == QMetaType::QByteArray) {
        const QByteArray bytes = value.toByteArray();
        QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
        const QString text =
            QTextCodec::codecForName("UTF-8")->toUnicode(bytes.constData(), bytes.size(), &state);
        if (state.invalidChars > 0 || state.remainingChars > 0)
            return false;
        value = text.isNull() ? QStringLiteral("") : text;
    }
    return value.userType() == QMetaType::QString && isKept(value.toString(), isSqlite);
}

bool toBytes(QVariant &value) {
    if (value.userType() == QMetaType::QString && value.toString().isValidUtf16()) {
        const QByteArray bytes = value.toString().toUtf8();
        value = bytes.isNull() ? QByteArray("", 0) : bytes;
    }
    return value.userType() == QMetaType::QByteArray;
}

bool toInteger(QVariant &value) {
    if (value.userType() == QMetaType::Double && isIntegral(value.toDouble()))
        value = qint64(value.toDouble());
    return value.userType() == QMetaType::LongLong;
}

bool toReal(QVariant &value) {
    if (value.userType() == QMetaType::LongLong) {
        const auto number = double(value.toLongLong());
        if (isIntegral(number) && qint64(number) == value.toLongLong())
            value = number;
    }
    return value.userType() == QMetaType::Double;
}

void appendNumber(QByteArray &bytes, char kind, quint64 bits) {
    const quint64 ordered = qToBigEndian(bits);
    bytes.append(kind);
    bytes.append(reinterpret_cast<const char *>(&ordered), sizeof ordered);
}

} // namespace

QVariant fromDriver(const QVariant &value, bool isSqlite, ColumnKind kind) {
    switch (value.userType()) {
    case QMetaType::QByteArray:
        // SQLite's driver hands out an empty value as one that is null, but NULL itself as a text.
        if (value.isNull())
            return isSqlite ? QVariant(QByteArray("", 0)) : QVariant();
        return value;
    case QMetaType::Double:
    case QMetaType::Float:
        return value.isNull() ? QVariant() : QVariant(value.toDouble());
    case QMetaType::QDate:
        return value.isNull() ? QVariant() : QVariant(value.toDate().toString(Qt::ISODate));
    case QMetaType::QDateTime:
        return value.isNull() ? QVariant() : QVariant(value.toDateTime().toString(Qt::ISODateWithMs));
    case QMetaType::QString:
        if (value.isNull())
            return {};
        return kind == ColumnKind::Date ? QVariant(dayOf(value.toString())) : value;
    default:
        return value.isNull() ? QVariant() : QVariant(value.toLongLong());
    }
}

bool fit(QVariant &value, ColumnKind kind, bool isSqlite) {
    if (!value.isValid())
        return true;
    switch (kind) {
    case ColumnKind::Any:
        if (value.userType() == QMetaType::QString)
            return isKept(value.toString(), isSqlite);
        // SQLite keeps NULL for what is not a number.
        return value.userType() != QMetaType::Double || !std::isnan(value.toDouble());
    case ColumnKind::Integer:
        return toInteger(value);
    case ColumnKind::Real:
        return toReal(value);
    case ColumnKind::Text:
        return toText(value, isSqlite);
    case ColumnKind::Bytes:
        return toBytes(value);
    case ColumnKind::Date:
        value = value.userType() == QMetaType::QString ? QVariant(dayOf(value.toString())) : value;
        return isSqlite || (value.userType() == QMetaType::QString &&
                            QDate::fromString(value.toString(), Qt::ISODate).isValid());
    }
    return false;
}

void appendInteger(QByteArray &bytes, qint64 value) {
    appendNumber(bytes, 'i', quint64(value));
}

void appendReal(QByteArray &bytes, double value) {
    if (isIntegral(value)) {
        appendInteger(bytes, qint64(value));
        return;
    }
    quint64 bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    appendNumber(bytes, 'r', bits);
}

void appendBytes(QByteArray &bytes, const char *content, int size) {
    appendNumber(bytes, 'b', quint64(size));
    bytes.append(content, size);
}

void appendCanonical(QByteArray &bytes, const QVariant &value) {
    switch (value.userType()) {
    case QMetaType::LongLong:
        return appendInteger(bytes, value.toLongLong());
    case QMetaType::Double:
        return appendReal(bytes, value.toDouble());
    default: {
        const QByteArray content =
            value.userType() == QMetaType::QByteArray ? value.toByteArray() : value.toString().toUtf8();
        appendBytes(bytes, content.constData(), content.size());
    }
    }
}

bool areSame(const QVariant &one, const QVariant &other) {
    if (!one.isValid() || !other.isValid())
        return one.isValid() == other.isValid();
    QByteArray bytes;
    QByteArray others;
    appendCanonical(bytes, one);
    appendCanonical(others, other);
    return bytes == others;
}

QVariant takeCanonical(const char *&at) {
    const char kind = *at++;
    const quint64 number = qFromBigEndian<quint64>(at);
    at += sizeof number;
    if (kind == 'i')
        return qint64(number);
    if (kind == 'r') {
        double value = 0;
        std::memcpy(&value, &number, sizeof value);
        return value;
    }
    const QByteArray content(at, int(number));
    at += number;
    QVariant text(content);
    return toText(text, true) || toText(text, false) ? text : QVariant(content);
}

} // namespace rowvalue

} // namespace moratools
