#pragma once

#include <vector>

namespace moratools::schema {

/// An element of SUMO's files and what becomes of it in a store. What has no column is kept as it stands.
struct Element {
    /// The elements that it is in, from below the root, and its own name: "edge/lane"; "." is the root. Of
    /// "(a|b)/c" either holds. What a network has inside its junctions is called "edge:inside" and the like.
    const char *path;
    const char *tables;     ///< what it becomes; empty where all of it is kept
    const char *columns;    ///< attributes that have a column: "width=Lane.width ..."
    const char *attributes; ///< the other attributes
    const char *place; ///< where these are kept, and the element when it becomes nothing; empty: left out
};

/// @{ By path. The names are those that SUMO 1.15 reads.
const std::vector<Element> &netElements();
const std::vector<Element> &demandElements();
const std::vector<Element> &additionalElements();
/// Of networks and of additional files.
const std::vector<Element> &programmeElements();
/// @}

} // namespace moratools::schema
