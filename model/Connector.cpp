#include "Connector.h"

#include "Net.h"

Connector::Connector(long id, Link *from, Link *to)
    : connID(id), roadId(id), mpStartLink(from), mpEndLink(to) {}

Connector::~Connector() {
    Net::forget(this);
}
