#include "tools/kinds/Roads.h"

#include "model/GeometryJson.h"

namespace moratools {

namespace {

const QString kFormat = QStringLiteral("sumo");
const QString kNotRoad = QStringLiteral("notRoad");

} // namespace

bool isRoad(const Link &link) {
    return !link.otherAttrsJson.value(kFormat).toObject().value(kNotRoad).toBool();
}

void markNoRoad(Link &link) {
    QJsonObject source = link.otherAttrsJson.value(kFormat).toObject();
    source.insert(kNotRoad, true);
    link.otherAttrsJson.insert(kFormat, source);
}

GeometryLine lineOf(const Link &link) {
    GeometryLine line = geometryjson::points(link.centerLinePointsJson);
    if (line.size() >= 2)
        return line;
    line.clear();
    for (const Vertex *vertex : link.mlVertex)
        line.append({vertex->x, vertex->y, vertex->z});
    return line;
}

void keepRoads(NetworkObjects &network) {
    QList<Link *> others;
    for (const auto &link : network.links) {
        if (!isRoad(*link))
            others.append(link.get());
    }
    network.removeAll(others, Cascade::Take);
}

} // namespace moratools
