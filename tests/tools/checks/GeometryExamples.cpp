#include "tests/tools/checks/Examples.h"

// Link 13 runs along x from -320 to -99 with the lanes 26, 27 and 28, of which 27 lies from y = -6.4 to -3.2; connector
// 19 joins it to link 1. Link 12, with lane 25 alone, leads out of the network over 175.67 m; vertices 35 to 38.

namespace {

/// The stored form of a line, from its points: "-320,-8.15 -99,-8.15", or with a height each.
QString line(const QString &points) {
    QStringList stored;
    for (const QString &point : points.split(QLatin1Char(' '))) {
        const QStringList at = point.split(QLatin1Char(','));
        stored.append(QStringLiteral("{\"x\":%1,\"y\":%2,\"z\":%3}")
                          .arg(at.value(0), at.value(1), at.value(2, QStringLiteral("0"))));
    }
    return QStringLiteral("{\"data\":[%1]}").arg(stored.join(QLatin1Char(',')));
}

QString put(const char *table, const char *column, const QString &points, const char *row) {
    return QStringLiteral("update %1 set %2 = '%3' where %4")
        .arg(QLatin1String(table), QLatin1String(column), line(points), QLatin1String(row));
}

/// Lane 27 elsewhere beside its link.
QStringList laneAt(double y) {
    const auto along = [](double at) { return QStringLiteral("-320,%1 -99,%1").arg(QString::number(at)); };
    return {put("Lane", "centerLinePointsJson", along(y), "laneID = 27"),
            put("Lane", "leftBreakPointsJson", along(y + 1.6), "laneID = 27"),
            put("Lane", "rightBreakPointsJson", along(y - 1.6), "laneID = 27")};
}

/// Lane 26 with a centre line of so many points.
QString lanesPoints(int count) {
    QStringList points;
    for (int i = 0; i < count; ++i)
        points.append(
            QStringLiteral("%1,-8.15").arg(QString::number(-320 + 221.0 * i / (count - 1), 'g', 12)));
    return put("Lane", "centerLinePointsJson", points.join(QLatin1Char(' ')), "laneID = 26");
}

std::vector<Example> linkExamples() {
    const auto link12AtHeight = [](const char *height) {
        return QStringList{put("Link", "centerLinePointsJson",
                               QStringLiteral("-2.62,-16.89 -4.59,-49.76 -19.57,-109.69,%1 -31.58,-189.76")
                                   .arg(QLatin1String(height)),
                               "linkID = 12")};
    };
    return {
        {"line.not-finite",
         {"update Vertex set x = 9e999 where vertexID = 16"},
         {"update Vertex set x = -9e9 where vertexID = 16"},
         {"network.rows-left-out", "number.not-finite"}},
        {"line.too-many-points", {lanesPoints(2001)}, {lanesPoints(2000)}},
        {"link.too-few-points",
         {"delete from LinkVertex where linkID = 6 and num = 2"},
         {"delete from LinkVertex where linkID = 2 and num in (2, 3)"},
         {"network.rows-left-out"}},
        {"link.repeated-point",
         {"update Vertex set x = 267.035, y = 18.65 where vertexID = 24"},
         {"update Vertex set x = 267.0351, y = 18.65 where vertexID = 24"},
         {"link.centre-line-differs"}},
        {"link.length-not-positive",
         {"update Link set length = 0 where linkID = 12"},
         {"update Link set length = 0.01 where linkID = 12"}},
        {"link.length-far-off",
         {"update Link set length = 80 where linkID = 12"},
         {"update Link set length = 100 where linkID = 12"}},
        {"link.length-off",
         {"update Link set length = 140 where linkID = 12"},
         {"update Link set length = 150 where linkID = 12"}},
        // Heights are those of the centre line.
        {"link.height-jumps", link12AtHeight("150"), link12AtHeight("110")},
        {"link.centre-line-differs",
         {put("Link", "centerLinePointsJson", "-11.89,3.2 -320,4.2", "linkID = 6")},
         {put("Link", "centerLinePointsJson", "-11.89,3.2 -320,3.21", "linkID = 6")}},
        {"link.edges-differ",
         {put("Link", "leftBreakPointsJson", "-11.89,0 -320,1", "linkID = 6")},
         {"update Link set leftBreakPointsJson = '{ \"data\" : [{\"y\":0,\"x\":-11.89,\"z\":0}, "
          "{\"x\":-320.0,\"y\":0,\"z\":0}] }' where linkID = 6"}},
    };
}

std::vector<Example> laneExamples() {
    return {
        {"lane.too-few-points",
         {put("Lane", "centerLinePointsJson", "-99,-8.15", "laneID = 26")},
         {put("Lane", "centerLinePointsJson", "-320,-8.15 -319,-8.15", "laneID = 26")}},
        {"lane.without-shape",
         {"update Lane set leftBreakPointsJson = '' where laneID = 27"},
         {"update Lane set centerLinePointsJson = '', leftBreakPointsJson = '', rightBreakPointsJson = ''"}},
        {"lane.repeated-point",
         {put("Lane", "centerLinePointsJson", "-320,-8.15 -320,-8.15 -99,-8.15", "laneID = 26")},
         {put("Lane", "centerLinePointsJson", "-320,-8.15 -319.999,-8.15 -99,-8.15", "laneID = 26")}},
        {"lane.width-not-positive",
         {"update Lane set width = 0 where laneID = 27"},
         {"update Lane set width = 0.1 where laneID = 27"}},
        {"lane.width-off-edges",
         {"update Lane set width = 4 where laneID = 27"},
         {"update Lane set width = 3.3 where laneID = 27"}},
        {"lane.edges-cross",
         {put("Lane", "leftBreakPointsJson", "-320,-3.2 -210,-3.2 -200,-8 -190,-3.2 -99,-3.2",
              "laneID = 27")},
         {put("Lane", "leftBreakPointsJson", "-320,-3.2 -210,-3.2 -200,-6.4 -190,-3.2 -99,-3.2",
              "laneID = 27")}},
        {"lane.edges-do-not-enclose",
         {"update Lane set leftBreakPointsJson = rightBreakPointsJson, "
          "rightBreakPointsJson = leftBreakPointsJson where laneID = 27"},
         {put("Lane", "centerLinePointsJson", "-320,-6.3 -99,-3.3", "laneID = 27")}},
        {"lane.off-link", laneAt(-40), laneAt(-14)},
    };
}

std::vector<Example> connectorExamples() {
    const auto edges = [](const char *left, const char *right) {
        return QStringList{put("Connector", "leftBreakPointsJson", left, "connID = 1"),
                           put("Connector", "rightBreakPointsJson", right, "connID = 1")};
    };
    // Lane 1 with a height.
    const auto laneAtHeight = [](const char *height) {
        return QStringList{put("Lane", "centerLinePointsJson",
                               QStringLiteral("-91,-11.05,%1 -11.89,-11.05,%1").arg(QLatin1String(height)),
                               "laneID = 1")};
    };
    return {
        {"connector.ends-off-lanes", edges("-10,-9.3 -1.0229,-16.9857", "-10,-12.8 -4.2171,-16.7943"),
         edges("-10.7,-9.3 -1.0229,-16.9857", "-10.7,-12.8 -4.2171,-16.7943")},
        // Lane 27 ends far short of lanes 1 and 2.
        {"connector.joins-distant-lanes",
         {put("Lane", "centerLinePointsJson", "-320,-4.8 -300,-4.8", "laneID = 27")},
         {put("Lane", "centerLinePointsJson", "-320,-4.8 -290,-4.8", "laneID = 27")},
         {"lane.edges-do-not-enclose"}},
        {"connector.height-jumps", laneAtHeight("30"), laneAtHeight("2.9")},
        {"connector.length-negative",
         {"update Connector set length = -1 where connID = 1"},
         {"update Connector set length = 0 where connID = 1"}},
        {"connector.without-length",
         {"update Connector set length = 0 where connID = 1"},
         {"update Connector set length = 0.01 where connID = 1"}},
    };
}

} // namespace

std::vector<Example> geometryExamples() {
    std::vector<Example> examples = linkExamples();
    for (const auto &more : {laneExamples(), connectorExamples()})
        examples.insert(examples.end(), more.begin(), more.end());
    return examples;
}
