#pragma once

#include <QString>

#include <optional>
#include <vector>

namespace moratools {

class Checked;

/// What gives out the identifiers of a table.
struct Counter {
    QString table;
    qint64 largest = 0;          ///< of the rows
    std::optional<qint64> value; ///< the last identifier given out; none where there is no counter
    QString sequence; ///< on a server: what counts, for this table or for all without one of their own
};

/// The counters of a network's tables that have rows: rows of IDGenerater, or the server's sequences.
struct Counters {
    explicit Counters(const Checked &checked);
    std::vector<Counter> counters;
};

} // namespace moratools
