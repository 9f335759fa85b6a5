#include "model/GeometryJson.h"
#include "tools/checks/Checked.h"
#include "tools/checks/Finding.h"
#include "tools/checks/RepairPlan.h"

#include <QHash>
#include <QSqlQuery>
#include <QVariant>

#include <algorithm>

namespace moratools {

namespace {

constexpr int kLines = 3;
constexpr const char *kColumns[kLines] = {"centerLinePointsJson", "leftBreakPointsJson",
                                          "rightBreakPointsJson"};

/// A vertex of a link, as LinkVertex has it.
struct LinkVertex {
    qint64 id;
    qint64 num;
};

/// The lines of a lane or a link.
struct Drawn {
    qint64 id = 0;
    bool isPlain =
        true; ///< nothing but points is in the lines, so that nothing is lost when they are written
    GeometryLine lines[kLines];
    GeometryLine vertices; ///< links only
    std::vector<LinkVertex> vertexRows;
};

/// The places that repeat the one before in all of some lines, which have equally many points. At the end of a line
/// the last point stays. None where the lines would not lead anywhere.
std::vector<int> repeatedIn(const std::vector<const GeometryLine *> &lines) {
    const int size = lines.front()->size();
    const auto areAlike = [&lines](int a, int b) {
        return std::all_of(lines.begin(), lines.end(),
                           [a, b](const GeometryLine *line) { return line->at(a) == line->at(b); });
    };
    std::vector<int> repeated;
    int kept = 0;
    for (int i = 1; i < size; ++i) {
        const bool isAlike = areAlike(i, kept);
        if (isAlike)
            repeated.push_back(i + 1 < size ? i : kept);
        if (!isAlike || i + 1 == size)
            kept = i;
    }
    std::sort(repeated.begin(), repeated.end());
    return size - int(repeated.size()) < 2 ? std::vector<int>() : repeated;
}

void take(GeometryLine &line, const std::vector<int> &places) {
    for (auto place = places.rbegin(); place != places.rend(); ++place)
        line.remove(*place);
}

class LineRepair {
public:
    explicit LineRepair(const Checked &checked) : mChecked(checked) {
        if (checked.rows().hasSeveralNetworks())
            mNet = QStringLiteral(" and NetId = %1").arg(checked.net().id);
    }

    void plan(const char *table, const char *idColumn, const char *word, std::vector<PlannedRepair> &plan) {
        const StoreTable *present = mChecked.rows().table(QLatin1String(table));
        if (!present || !present->column(QLatin1String(idColumn)) ||
            !present->column(QLatin1String(kColumns[0])))
            return;
        const bool isLink = qstrcmp(table, "Link") == 0;
        if (isLink)
            readVertices();
        QSqlQuery rows = mChecked.rows().run(QStringLiteral("select %1, %2, %3, %4 from %5%6")
                                                 .arg(QLatin1String(idColumn), QLatin1String(kColumns[0]),
                                                      QLatin1String(kColumns[1]), QLatin1String(kColumns[2]),
                                                      QLatin1String(table),
                                                      mChecked.rows().condition(*present, mChecked.net())));
        while (rows.next()) {
            Drawn drawn = isLink ? mLinks.value(rows.value(0).toLongLong()) : Drawn();
            drawn.id = rows.value(0).toLongLong();
            for (int i = 0; i < kLines; ++i) {
                const QByteArray text = rows.value(i + 1).toByteArray();
                const StoredJson line = StoredJson::fromText(text);
                drawn.lines[i] = geometryjson::points(line);
                drawn.isPlain = drawn.isPlain && (line.holdsNothing() || geometryjson::hasStoredForm(text));
            }
            if (drawn.isPlain)
                repair(std::move(drawn), QLatin1String(table), QLatin1String(idColumn), QLatin1String(word),
                       plan);
        }
        mChecked.rows().check(rows);
    }

private:
    /// Links with the points of their vertices, which are the other form of their centre line.
    void readVertices() {
        if (!mChecked.rows().table(QStringLiteral("LinkVertex")) ||
            !mChecked.rows().table(QStringLiteral("Vertex")))
            return;
        const QString sameNet =
            mNet.isEmpty()
                ? QString()
                : QStringLiteral(" and v.NetId = l.NetId where l.NetId = %1").arg(mChecked.net().id);
        QSqlQuery rows = mChecked.rows().run(
            QStringLiteral(
                "select l.linkID, l.vertexID, l.num, v.x, v.y, v.z from LinkVertex l join Vertex v "
                "on v.vertexID = l.vertexID%1 order by l.linkID, l.num")
                .arg(sameNet));
        while (rows.next()) {
            Drawn &link = mLinks[rows.value(0).toLongLong()];
            link.vertices.append(
                {rows.value(3).toDouble(), rows.value(4).toDouble(), rows.value(5).toDouble()});
            link.vertexRows.push_back({rows.value(1).toLongLong(), rows.value(2).toLongLong()});
        }
        mChecked.rows().check(rows);
    }

    void repair(Drawn drawn, const QString &table, const QString &idColumn, const QString &word,
                std::vector<PlannedRepair> &plan) const {
        PlannedRepair repair;
        int taken = 0;
        std::vector<GeometryLine *> left;
        for (GeometryLine &line : drawn.lines)
            left.push_back(&line);
        left.push_back(&drawn.vertices);
        // Lines with as many points go together: their points are those of one place along the road.
        while (!left.empty()) {
            const int size = left.front()->size();
            std::vector<const GeometryLine *> bundle;
            const auto rest = std::stable_partition(
                left.begin(), left.end(), [size](const GeometryLine *line) { return line->size() == size; });
            bundle.assign(left.begin(), rest);
            const std::vector<int> repeated = size > 2 ? repeatedIn(bundle) : std::vector<int>();
            for (auto line = left.begin(); line != rest && !repeated.empty(); ++line)
                takeFrom(drawn, **line, repeated, table, idColumn, repair.steps);
            taken += int(repeated.size());
            left.erase(left.begin(), rest);
        }
        if (taken > 0) {
            repair.text = QStringLiteral("%1: points taken out that repeated the one before: %2")
                              .arg(called(word, drawn.id), QString::number(taken));
            plan.push_back(std::move(repair));
        }
    }

    void takeFrom(const Drawn &drawn, GeometryLine &line, const std::vector<int> &repeated,
                  const QString &table, const QString &idColumn, std::vector<RepairStep> &steps) const {
        if (&line == &drawn.vertices) {
            for (const int place : repeated)
                takeVertex(drawn.id, drawn.vertexRows[std::size_t(place)], steps);
            return;
        }
        take(line, repeated);
        const QByteArray text = geometryjson::fromPoints(line).text();
        const QVariant value =
            mChecked.rows().isSqlite() ? QVariant(text) : QVariant(QString::fromUtf8(text));
        steps.push_back({QStringLiteral("update %1 set %2 = ? where %3 = ?%4")
                             .arg(table, QLatin1String(kColumns[&line - drawn.lines]), idColumn, mNet),
                         {value, drawn.id}});
    }

    void takeVertex(qint64 link, const LinkVertex &vertex, std::vector<RepairStep> &steps) const {
        steps.push_back(
            {QStringLiteral("delete from LinkVertex where linkID = ? and vertexID = ? and num = ?") + mNet,
             {link, vertex.id, vertex.num}});
        steps.push_back(
            {QStringLiteral(
                 "delete from Vertex where vertexID = ?%1 and not exists (select 1 from LinkVertex where "
                 "vertexID = ?%1) and not exists (select 1 from Node where vertexID = ?%1)")
                 .arg(mNet),
             {vertex.id, vertex.id, vertex.id}});
    }

    const Checked &mChecked;
    QString mNet; ///< " and NetId = 3" in stores of several networks
    QHash<qint64, Drawn> mLinks;
};

} // namespace

std::vector<PlannedRepair> repairsOfLines(const Checked &checked) {
    std::vector<PlannedRepair> plan;
    LineRepair(checked).plan("Link", "linkID", "link", plan);
    LineRepair(checked).plan("Lane", "laneID", "lane", plan);
    return plan;
}

} // namespace moratools
