#pragma once

#include "store/core/Store.h"

/// Around an operation that writes its rows as a whole or not at all inside the caller's transaction. On
/// SQLite it serves outside a transaction, too: there it is one.
class OperationSavepoint {
public:
    explicit OperationSavepoint(const Store &store);
    /// Undoes what was not ended.
    ~OperationSavepoint() { end(false); }
    OperationSavepoint(const OperationSavepoint &) = delete;
    OperationSavepoint &operator=(const OperationSavepoint &) = delete;

    /// Keeps what was written since when @p written is true, undoes it otherwise. @return whether it is kept.
    bool end(bool written);

private:
    const Store &mStore;
    bool mSet = false;
    bool mBegins = false; ///< it is a transaction of its own
};
