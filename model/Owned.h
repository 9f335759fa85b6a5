#pragma once

#include <memory>

/// Destroys an object, and then lets go of what the object refers to.
struct OwnedDelete {
    /// What the object points to without owning it: the links of a connector, the phase of a lamp.
    std::shared_ptr<const void> kept;

    template <class T>
    void operator()(T *object) const {
        delete object;
    }
};

/// An object that belongs to whoever holds it, with what it refers to: all of that stays as long as this does.
///
/// It was made for its holder alone, is in no network's tables, and what it refers to is shared with no other.
/// Moving it out with release() leaves the caller the object without what it refers to; clone() makes an object
/// that is owned plainly and refers to the same.
template <class T>
using Owned = std::unique_ptr<T, OwnedDelete>;
