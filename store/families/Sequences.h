#pragma once

#include "store/core/Store.h"

/// The sequences of a PostgreSQL store; nothing to do, and true, on other engines.
namespace sequences {

/// The largest key value over all tables of @p schema ("public" when empty).
bool largestKey(const Store &store, const QString &schema, long &largest);

/// Moves the sequences past what the tables use, after data were copied in.
bool rebase(const Store &store, const QString &schema);

} // namespace sequences
