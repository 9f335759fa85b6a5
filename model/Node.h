#pragma once

#include <QString>

struct Vertex;

/// An end of a link.
struct Node {
    long nodeID = 0;
    QString nodeName;
    Vertex *mpVertex = nullptr; ///< where it stands; a vertex of its link, not owned
};
