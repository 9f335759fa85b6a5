#include "Link.h"

#include "Net.h"

#include <cmath>

Link::~Link() {
    Net::forget(this);
    if (mpEndNode != mpStartNode)
        delete mpEndNode;
    delete mpStartNode;
}

double Link::width() const {
    if (mlLane.isEmpty())
        return laneNumber * laneWidth;
    double sum = 0;
    for (const Lane *lane : mlLane)
        sum += lane->width;
    return sum;
}

void Link::calcuLength() {
    length = 0;
    for (int i = 1; i < mlVertex.size(); ++i)
        length += std::hypot(mlVertex[i]->x - mlVertex[i - 1]->x, mlVertex[i]->y - mlVertex[i - 1]->y);
}
