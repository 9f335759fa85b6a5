#include "Connector.h"

Connector::Connector(long id, Link *from, Link *to)
    : connID(id), roadId(id), mpStartLink(from), mpEndLink(to) {}
