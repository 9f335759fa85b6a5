#include "LinkType.h"

QList<LinkType> glLinkType;
