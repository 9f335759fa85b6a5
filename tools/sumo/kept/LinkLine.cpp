#include "tools/sumo/kept/LinkLine.h"

#include "tools/sumo/kept/Packed.h"

namespace moratools {

namespace linkline {

QString digestOf(const Link &link) {
    QByteArray text;
    for (const Vertex *vertex : link.mlVertex) {
        for (const double number : {vertex->x, vertex->y, vertex->z})
            appendBits(text, number);
    }
    return shortDigestOf(text);
}

} // namespace linkline

} // namespace moratools
