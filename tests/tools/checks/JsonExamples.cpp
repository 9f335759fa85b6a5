#include "tests/tools/checks/Examples.h"

namespace {

/// One statement that puts a text into a column of a row.
QStringList put(const char *table, const char *column, const char *text, const char *row) {
    return {QStringLiteral("update %1 set %2 = '%3' where %4")
                .arg(QLatin1String(table), QLatin1String(column), QLatin1String(text), QLatin1String(row))};
}

} // namespace

std::vector<Example> jsonExamples() {
    return {
        {"json.does-not-parse", put("Lane", "leftBreakPointsJson", R"({"data":[{"x":1,"y":2)", "laneID = 1"),
         put("Lane", "leftBreakPointsJson", R"( {"data" : [{"x":1,"y":2,"z":3}] } )", "laneID = 1")},
        {"json.no-object", put("Net", "otherAttrsJson", R"([{"colour":"red"}])", "NetId = 1"),
         put("Net", "otherAttrsJson", R"({"colours":["red"]})", "NetId = 1")},
        {"json.no-points",
         put("Link", "centerLinePointsJson", R"({"points":[{"x":1,"y":2,"z":3}]})", "linkID = 1"),
         put("Link", "centerLinePointsJson", "", "linkID = 1") +
             put("Link", "leftBreakPointsJson", "{}", "linkID = 1")},
        {"json.point-without-numbers",
         put("LaneConnector", "centerLinePointsJson",
             R"({"data":[{"x":1,"y":2,"z":3},{"x":1,"y":"2","z":3}]})", "laneConnId = 1"),
         put("LaneConnector", "centerLinePointsJson", R"({"data":[{"x":1.50,"y":2e1},{"y":2,"x":1,"z":3}]})",
             "laneConnId = 1")},
    };
}
