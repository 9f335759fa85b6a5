#pragma once

#include "model/StoredJson.h"

#include <QString>
#include <QVariant>

#include <limits>

/// What every store takes and gives back unchanged. The engines differ in what they make of the rest: SQLite
/// turns NaN into NULL and cuts texts at NUL when they are read, PostgreSQL refuses both in its own words.
/// Such a value is refused on all of them before its statement runs. So is an identifier, or another whole
/// number, that does not fit into the 32 bits that are read back.
namespace storablevalue {

constexpr qint64 kLargestId = std::numeric_limits<qint32>::max();

constexpr bool holdsId(qint64 id) {
    return id >= std::numeric_limits<qint32>::min() && id <= kLargestId;
}

/// @{ Why a value cannot be stored, as the end of a sentence; empty when it can.
QString objection(const QVariant &value);

/// @p text is the stored form of the JSON object @p value. JSON has no NaN and no infinities.
QString objection(const StoredJson &value, const QByteArray &text);
/// @}

} // namespace storablevalue
