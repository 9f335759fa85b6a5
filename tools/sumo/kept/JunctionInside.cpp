#include "tools/sumo/kept/JunctionInside.h"

namespace moratools {

QString JunctionInside::toText(Packer &packer) const {
    return packer(edges + '\n' + rightOfWay + '\n' + junctions + '\n' + connections);
}

JunctionInside JunctionInside::fromText(const QString &text) {
    JunctionInside inside;
    inside.viewed = unpacked(text);
    const QByteArray &all = inside.viewed;
    int start = 0;
    for (QByteArray *part : {&inside.edges, &inside.rightOfWay, &inside.junctions, &inside.connections}) {
        if (start >= all.size())
            break;
        // A part without an element is nothing but the empty line.
        int end = start;
        while (end < all.size() && all[end] != '\n') {
            const int lineEnd = all.indexOf('\n', end);
            end = lineEnd < 0 ? all.size() : lineEnd + 1;
        }
        *part = QByteArray::fromRawData(all.constData() + start, end - start);
        start = end + 1;
    }
    return inside;
}

} // namespace moratools
