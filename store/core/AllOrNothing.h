#pragma once

#include "store/core/OperationSavepoint.h"
#include "store/core/OperationTransaction.h"

#include <optional>

/// Around an operation that writes all of its rows or none, whether or not the caller has a transaction open:
/// inside one it is a savepoint, outside a transaction of its own.
class AllOrNothing {
public:
    explicit AllOrNothing(const Store &store);
    AllOrNothing(const AllOrNothing &) = delete;
    AllOrNothing &operator=(const AllOrNothing &) = delete;

    /// Keeps what was written since when @p written is true, undoes it otherwise; dropped unfinished it undoes
    /// it, too. @return whether it is kept.
    bool end(bool written);

private:
    std::optional<OperationTransaction> mTransaction;
    std::optional<OperationSavepoint> mSavepoint;
};
