#include "Connector.h"

Connector::Connector(long id, Link *from, Link *to)
    : connID(id), roadId(id), mpStartLink(from), mpEndLink(to) {}

std::unique_ptr<Connector> Connector::clone() const {
    std::unique_ptr<Connector> copy(new Connector(*this));
    for (LaneConnector *lanes : qAsConst(copy->mlLaneConnector)) {
        if (lanes)
            lanes->mpConnector = copy.get();
    }
    return copy;
}
