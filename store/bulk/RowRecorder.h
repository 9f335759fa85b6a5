#pragma once

#include "store/bulk/RowSink.h"

#include <vector>

/// Takes the rows of a save in the place of the store, which is not written to then.
class RowRecorder {
public:
    virtual ~RowRecorder() = default;

    /// Whether rows of @p table are to be made at all.
    virtual bool wants(const char *table) const = 0;
    /// What takes rows of these columns.
    virtual std::unique_ptr<RowSink> sink(const char *table, const QStringList &columns) = 0;
};
