#pragma once

#include <memory>

/// A point of a link's centre line.
struct Vertex {
    long vertexID = 0;
    double x = 0;
    double y = 0;
    double z = 0; ///< height

    /// A copy that the caller owns.
    std::unique_ptr<Vertex> clone() const { return std::make_unique<Vertex>(*this); }
};
