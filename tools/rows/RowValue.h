#pragma once

#include "tools/MoraToolsExport.h"

#include <QByteArray>
#include <QVariant>

namespace moratools {

/// What a column takes.
enum class ColumnKind {
    Any,     ///< whatever it is given (SQLite)
    Integer, ///< 64 bits
    Real,    ///< double precision
    Text,
    Bytes,
    Date, ///< a day, as the text "yyyy-MM-dd"
};

/// Values of rows, whatever the engine: QVariant of type LongLong, Double, QString or QByteArray, invalid
/// for NULL.
namespace rowvalue {

/// `value` as a driver gave it. A column of kind Date gives the day as text.
MORATOOLS_EXPORT QVariant fromDriver(const QVariant &value, bool isSqlite, ColumnKind kind);

/// `value` as a column of `kind` takes it, without any loss: bytes become text and text bytes (UTF-8),
/// integers reals, integral reals integers, a time of a day the day. False when it cannot be kept: texts that
/// are not valid Unicode, and on SQLite those that begin with a byte order mark, which it takes off.
MORATOOLS_EXPORT bool fit(QVariant &value, ColumnKind kind, bool isSqlite);

/// Appends a form of `value` that is the same on every engine: a number that is integral as a 64-bit integer,
/// any other bit for bit, texts and bytes as bytes.
MORATOOLS_EXPORT void appendCanonical(QByteArray &bytes, const QVariant &value);
/// @{ The same, without a QVariant.
void appendInteger(QByteArray &bytes, qint64 value);
void appendReal(QByteArray &bytes, double value);
void appendBytes(QByteArray &bytes, const char *content, int size);
/// @}

/// Whether both are the same on every engine.
bool areSame(const QVariant &one, const QVariant &other);

/// The value at `at`, which goes on behind it: an integer, a real, a text, or bytes where they are no text.
QVariant takeCanonical(const char *&at);

} // namespace rowvalue

} // namespace moratools
