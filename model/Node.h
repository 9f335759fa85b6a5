#pragma once

#include <QString>

#include <memory>

struct Vertex;

/// An end of a link.
struct Node {
    long nodeID = 0;
    QString nodeName;
    Vertex *mpVertex = nullptr; ///< where it stands; a vertex of its link, not owned

    /// A copy that the caller owns, on the same vertex.
    std::unique_ptr<Node> clone() const { return std::make_unique<Node>(*this); }
};
