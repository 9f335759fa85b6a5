#pragma once

#include "store/core/Store.h"

#include <optional>

/// The sequences of a PostgreSQL store, which serve all its networks.
namespace sequences {

/// @{ A table without a sequence of its own draws from the shared one. Without that either, which is
/// recorded, the result is false.

/// Appends @p count values of the sequence of @p table to @p ids: nobody else gets them, rolled back or not.
bool draw(const Store &store, const QString &table, int count, QList<long> &ids);
/// The value that the sequence of @p table has handed out last; 0 for a new one, none when it cannot be asked.
std::optional<qint64> last(const Store &store, const QString &table);
/// Later values of the sequence of @p table are above @p floor.
bool pass(const Store &store, const QString &table, qint64 floor);
/// @}
/// A value of the general-purpose sequence.
bool drawGeneral(const Store &store, long &id);

/// The largest key value over all tables of @p schema ("public" when empty). Nothing to do, and true, on
/// other engines.
bool largestKey(const Store &store, const QString &schema, long &largest);

/// Moves the sequences past what the tables use, after data were copied in. Nothing to do, and true, on other
/// engines.
bool rebase(const Store &store, const QString &schema);

} // namespace sequences
