#pragma once

/// A point of a link's centre line.
struct Vertex {
    long vertexID = 0;
    double x = 0;
    double y = 0;
    double z = 0; ///< height
};
