#pragma once

#include "model/MoraStoreExport.h"
#include "model/StoredJson.h"

#include <QString>
#include <QVariant>

#include <limits>

/// What every store takes and gives back unchanged. The engines differ in what they make of the rest: SQLite
/// turns NaN into NULL, cuts texts at NUL when they are read and takes a leading byte order mark off (a
/// swapped one turns every character round), PostgreSQL refuses or keeps these in its own way. Such a value
/// is refused on all of them before its statement runs. So is an identifier, or another whole number, that
/// does not fit into the 32 bits that are read back, and a text that is longer than texts are.
namespace storablevalue {

/// The longest text, in UTF-16 units. No name comes near it, and a store from somebody else is not to fill
/// the memory with one.
constexpr int kLongestText = 1024 * 1024;

/// Whether @p column holds what is no text in this sense, and as long as the engine takes: JSON and pictures.
MORASTORE_EXPORT bool mayBeLonger(const QString &column);

constexpr qint64 kLargestId = std::numeric_limits<qint32>::max();

constexpr bool holdsId(qint64 id) {
    return id >= std::numeric_limits<qint32>::min() && id <= kLargestId;
}

/// A number without its fraction; 0 for one that has no place in 64 bits, which only a damaged store has.
constexpr qint64 wholePart(double number) {
    constexpr double beyond = 9223372036854775808.0; // 2 to the power of 63
    return number >= -beyond && number < beyond ? static_cast<qint64>(number) : 0;
}

/// @{ Why a value cannot be stored, as the end of a sentence; empty when it can.
/// @param mayBeLong whether it goes into a column of which mayBeLonger() holds.
QString objection(const QVariant &value, bool mayBeLong = false);

/// @p text is the stored form of the JSON object @p value. JSON has no NaN and no infinities.
/// @param asText whether the column takes text; one of bytes keeps also what is no valid text.
QString objection(const StoredJson &value, const QByteArray &text, bool asText);
/// @}

/// What is given to Qt's driver for @p value. It writes numbers into the statement, and PostgreSQL reads -0
/// as an integer, which has no sign.
QVariant bound(const QVariant &value, bool isPostgreSql);

} // namespace storablevalue
