#include "tools/differences/Alignment.h"

#include "store/catalogue/Catalogue.h"
#include "tools/rows/TableCopy.h"

#include <QHash>

#include <QSet>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>

namespace moratools {

namespace {

using Ids = std::vector<qint64>;
using RowsByPlace = QHash<QByteArray, Ids>;

/// What tells the rows of a table apart but for their identifiers. Tables come after those that they refer to;
/// vertices and nodes are matched by those that have them.
struct Place {
    const char *table;
    std::vector<const char *> columns;
};

const std::vector<Place> &places() {
    static const std::vector<Place> all = {
        {"VehicleType", {"vehicleTypeName"}},
        {"VehicleConstitutent", {"name"}},
        {"Link", {"linkName"}},
        {"Lane", {"linkID", "serialNumber"}},
        {"GuideArrow", {"laneID", "arrowType"}},
        {"Connector", {"StartlinkID", "EndlinkID"}},
        {"LaneConnector", {"connID", "startLaneID", "endLaneID"}},
        {"SignalGroup", {"name"}},
        {"SignalPhase", {"signalGroupID", "serialNumber"}},
        {"SignalLamp", {"signalPhaseID", "laneID", "toLaneID", "name"}},
        {"DeparturePoint", {"linkID", "name"}},
        {"DepartureInterval", {"departurePointID", "interval", "vehiCons"}},
        {"DecisionPoint", {"linkID", "deciPointName"}},
        {"Routing", {"deciPointID", "routingName"}},
        {"RoutingFLowRatio", {"routingID", "startDateTime", "endDateTime"}},
        {"VehicleDetector", {"name", "laneNumber"}},
        {"VehicleQueueCounter", {"name", "laneNumber"}},
        {"VehicleTravelDetector", {"name"}},
        {"VehicleDrivInfoCollecter", {"name", "laneNumber"}},
        {"BusLine", {"name"}},
        {"BusStation", {"linkID", "name"}},
        {"BusStationLine", {"busLineID", "busStationID"}},
        {"BusStationPassengerArriving", {"stationLineID", "startTime"}},
        {"Passenger", {"stationLineID", "arrivingTime"}},
        {"AccidentZone", {"name"}},
        {"RoadWorkZone", {"name"}},
        {"ReduceSpeedArea", {"name", "laneNumber"}},
        {"ReduceSpeedInterval", {"reduceSpeedAreaID", "startTime"}},
    };
    return all;
}

/// One of the two networks.
struct Side {
    const StoreReader &store;
    const NamedNetwork &network;

    /// The values of columns, row by row; invalid ones for columns that the store does not have.
    void read(const char *named, const std::vector<const char *> &columns,
              const std::function<void(const QVector<QVariant> &)> &use) const {
        const StoreTable *table = store.table(QLatin1String(named));
        const catalogue::Table *entry = catalogue::find(QLatin1String(named));
        if (!table || !entry)
            return;
        QVector<int> wanted;
        for (const char *name : columns) {
            const StoreColumn *column = table->column(QLatin1String(name));
            wanted.append(column ? int(column - table->columns.constData()) : -1);
        }
        QVector<QVariant> values(wanted.size());
        store.read(*table, *entry, network, StoreReader::Order::Canonical, [&](const StoreReader::Row &row) {
            for (int i = 0; i < wanted.size(); ++i)
                values[i] = wanted[i] < 0 ? QVariant() : row[wanted[i]];
            use(values);
        });
    }
    Ids idsOf(const catalogue::Table &entry) const {
        const StoreTable *table = store.table(QLatin1String(entry.name));
        const StoreColumn *id = table && entry.id ? table->column(QLatin1String(entry.id)) : nullptr;
        return id ? store.integers(*table, *id, network) : Ids();
    }
};

struct NamedLink {
    qint64 id;
    QString name;
};

/// Links for which `isWanted` holds, by the points where they begin and end.
QHash<QByteArray, std::vector<NamedLink>> linksByEnds(const Side &side,
                                                      const std::function<bool(qint64)> &isWanted) {
    // Coordinates are drawn, and rounded, to centimetres.
    constexpr double cells = 10; // in a metre
    struct Ends {
        std::pair<qint64, qint64> first{std::numeric_limits<qint64>::max(), 0}; ///< number, vertex
        std::pair<qint64, qint64> last{std::numeric_limits<qint64>::min(), 0};
    };
    QHash<qint64, Ends> ends;
    side.read("LinkVertex", {"linkID", "num", "vertexID"}, [&](const QVector<QVariant> &values) {
        const qint64 link = values[0].toLongLong();
        if (!isWanted(link))
            return;
        const std::pair<qint64, qint64> point(values[1].toLongLong(), values[2].toLongLong());
        Ends &of = ends[link];
        of.first = std::min(of.first, point);
        of.last = std::max(of.last, point);
    });
    QHash<qint64, QByteArray> places;
    for (const Ends &of : qAsConst(ends)) {
        places.insert(of.first.second, {});
        places.insert(of.last.second, {});
    }
    side.read("Vertex", {"VertexID", "x", "y"}, [&](const QVector<QVariant> &values) {
        const auto place = places.find(values[0].toLongLong());
        if (place != places.end())
            *place = QByteArray::number(std::floor(values[1].toDouble() * cells), 'f', 0) + ' ' +
                     QByteArray::number(std::floor(values[2].toDouble() * cells), 'f', 0);
    });
    QHash<QByteArray, std::vector<NamedLink>> found;
    side.read("Link", {"linkID", "linkName"}, [&](const QVector<QVariant> &values) {
        const auto of = ends.constFind(values[0].toLongLong());
        if (of != ends.constEnd() && of->first.second != of->last.second)
            found[places.value(of->first.second) + ' ' + places.value(of->last.second)].push_back(
                {values[0].toLongLong(), values[1].toString()});
    });
    return found;
}

class Matcher {
public:
    Matcher(const Side &first, const Side &second, Matching matching)
        : mFirst(first), mSecond(second), mMatching(matching) {}

    Alignment run();

private:
    using Matched = QHash<qint64, qint64>; ///< the first network's identifier by the second's

    void match(const Place &place);
    RowsByPlace rows(const Side &side, const Place &place, bool isSecond) const;
    void pair(const QString &table, const Ids &first, const Ids &second);
    void matchByGeometry();
    void matchNodes();
    void matchVertices();
    void number(const catalogue::Table &entry);

    const Side mFirst;
    const Side mSecond;
    const Matching mMatching;
    QHash<QString, Matched> mMatched;
    Alignment mResult;
};

Alignment Matcher::run() {
    for (const Place &place : places()) {
        match(place);
        if (mMatching == Matching::NamesThenGeometry && qstrcmp(place.table, "Link") == 0)
            matchByGeometry();
    }
    matchNodes();
    matchVertices();
    for (const catalogue::Table &entry : catalogue::tables()) {
        if (entry.id)
            number(entry);
    }
    return std::move(mResult);
}

/// Rows by what tells them apart. References are to rows of the first network, and of a row of the second that
/// refers to one that only the second has nobody knows what it corresponds to.
RowsByPlace Matcher::rows(const Side &side, const Place &place, bool isSecond) const {
    const catalogue::Table &entry = *catalogue::find(QLatin1String(place.table));
    std::vector<const char *> columns{entry.id};
    columns.insert(columns.end(), place.columns.begin(), place.columns.end());
    std::vector<const char *> refers(columns.size(), nullptr);
    const auto isWord = [&entry](const char *column) {
        return std::any_of(entry.words.begin(), entry.words.end(),
                           [column](const char *word) { return qstricmp(word, column) == 0; });
    };
    Translation words(mSecond.store.language(mSecond.network), mFirst.store.language(mFirst.network));
    for (std::size_t i = 1; i < columns.size(); ++i) {
        for (const catalogue::Reference &reference : entry.references) {
            if (reference.table && qstricmp(reference.column, columns[i]) == 0)
                refers[i] = reference.table;
        }
    }
    RowsByPlace found;
    side.read(place.table, columns, [&](const QVector<QVariant> &values) {
        if (!values[0].isValid())
            return;
        QByteArray text;
        for (int i = 1; i < values.size(); ++i) {
            QVariant value = values[i];
            if (isSecond && refers[std::size_t(i)] && value.toLongLong() != 0) {
                const Matched matched = mMatched.value(QLatin1String(refers[std::size_t(i)]));
                const auto first = matched.constFind(value.toLongLong());
                if (first == matched.constEnd())
                    return;
                value = *first;
            }
            if (isSecond && isWord(columns[std::size_t(i)]))
                words.apply(value);
            rowvalue::appendCanonical(text, value);
        }
        found[text].push_back(values[0].toLongLong());
    });
    return found;
}

void Matcher::match(const Place &place) {
    const QString table = QLatin1String(place.table);
    RowsByPlace first = rows(mFirst, place, false);
    const RowsByPlace second = rows(mSecond, place, true);
    for (auto group = second.cbegin(); group != second.cend(); ++group)
        pair(table, first.value(group.key()), *group);
}

void Matcher::pair(const QString &table, const Ids &first, const Ids &second) {
    if (first.empty())
        return;
    if (first.size() != second.size()) {
        mResult.counts[table].ambiguous += qint64(first.size() + second.size());
        return;
    }
    Ids a = first;
    Ids b = second;
    std::sort(a.begin(), a.end());
    std::sort(b.begin(), b.end());
    for (std::size_t i = 0; i < a.size(); ++i)
        mMatched[table].insert(b[i], a[i]);
}

/// Links that have no counterpart, by where they begin and end.
void Matcher::matchByGeometry() {
    Matched &links = mMatched[QStringLiteral("Link")];
    const QList<qint64> known = links.values();
    const QSet<qint64> taken(known.begin(), known.end());
    const auto first = linksByEnds(mFirst, [&](qint64 id) { return !taken.contains(id); });
    const auto second = linksByEnds(mSecond, [&](qint64 id) { return !links.contains(id); });
    for (auto group = second.cbegin(); group != second.cend(); ++group) {
        const std::vector<NamedLink> same = first.value(group.key());
        if (same.size() != 1 || group->size() != 1)
            continue;
        links.insert(group->front().id, same.front().id);
        mResult.byGeometry.append(QStringLiteral("link %1 \"%2\" is link %3 \"%4\" by its geometry")
                                      .arg(QString::number(same.front().id), same.front().name,
                                           QString::number(group->front().id), group->front().name));
    }
    mResult.byGeometry.sort();
}

/// By their names; those that share one are told apart by the links that begin and end there.
void Matcher::matchNodes() {
    const auto named = [](const Side &side) {
        RowsByPlace found;
        side.read("Node", {"nodeID", "nodeName"}, [&](const QVector<QVariant> &values) {
            if (!values[1].toString().isEmpty())
                found[values[1].toString().toUtf8()].push_back(values[0].toLongLong());
        });
        return found;
    };
    const RowsByPlace first = named(mFirst);
    const RowsByPlace second = named(mSecond);
    Matched &nodes = mMatched[QStringLiteral("Node")];
    QHash<qint64, bool> taken;
    for (auto group = second.cbegin(); group != second.cend(); ++group) {
        const Ids same = first.value(group.key());
        if (same.size() == 1 && group->size() == 1) {
            nodes.insert(group->front(), same.front());
            taken.insert(same.front(), true);
        }
    }
    QHash<qint64, std::pair<qint64, qint64>> ends;
    mFirst.read("Link", {"linkID", "StartNodeID", "EndNodeID"}, [&](const QVector<QVariant> &values) {
        ends.insert(values[0].toLongLong(), {values[1].toLongLong(), values[2].toLongLong()});
    });
    const Matched links = mMatched.value(QStringLiteral("Link"));
    const auto join = [&](qint64 from, qint64 to) {
        if (from == 0 || to == 0 || nodes.contains(from) || taken.contains(to))
            return;
        nodes.insert(from, to);
        taken.insert(to, true);
    };
    mSecond.read("Link", {"linkID", "StartNodeID", "EndNodeID"}, [&](const QVector<QVariant> &values) {
        const auto link = links.constFind(values[0].toLongLong());
        const auto same = link == links.constEnd() ? ends.constEnd() : ends.constFind(*link);
        if (same == ends.constEnd())
            return;
        join(values[1].toLongLong(), same->first);
        join(values[2].toLongLong(), same->second);
    });
}

/// By the nodes that are there, and by their places in links.
void Matcher::matchVertices() {
    Matched &vertices = mMatched[QStringLiteral("Vertex")];
    QHash<qint64, bool> taken;
    const auto carry = [&](const char *table, const char *owner, const char *carrier,
                           const std::vector<const char *> &rest) {
        std::vector<const char *> columns{carrier, "vertexID"};
        columns.insert(columns.end(), rest.begin(), rest.end());
        const Matched owners = mMatched.value(QLatin1String(owner));
        const auto placed = [&](const QVector<QVariant> &values, qint64 id) {
            QByteArray text = QByteArray::number(id);
            for (int i = 2; i < values.size(); ++i)
                rowvalue::appendCanonical(text, values[i]);
            return text;
        };
        QHash<QByteArray, qint64> there;
        mFirst.read(table, columns, [&](const QVector<QVariant> &values) {
            there.insert(placed(values, values[0].toLongLong()), values[1].toLongLong());
        });
        mSecond.read(table, columns, [&](const QVector<QVariant> &values) {
            const auto same = owners.constFind(values[0].toLongLong());
            const auto vertex =
                same == owners.constEnd() ? there.constEnd() : there.constFind(placed(values, *same));
            if (vertex == there.constEnd() || taken.contains(*vertex) ||
                vertices.contains(values[1].toLongLong()))
                return;
            vertices.insert(values[1].toLongLong(), *vertex);
            taken.insert(*vertex, true);
        });
    };
    carry("Node", "Node", "nodeID", {});
    carry("LinkVertex", "Link", "linkID", {"num"});
}

/// What the second's rows of a table are called from now on.
void Matcher::number(const catalogue::Table &entry) {
    const QString name = QLatin1String(entry.name);
    Ids own = mSecond.idsOf(entry);
    const Ids first = mFirst.idsOf(entry);
    const bool isCompared = mMatched.contains(name) || mResult.counts.count(name) > 0 ||
                            std::any_of(places().begin(), places().end(), [&](const Place &place) {
                                return name == QLatin1String(place.table);
                            });
    if (!isCompared)
        return;
    const Matched matched = mMatched.value(name);
    const qint64 largest = std::max(first.empty() ? 0 : first.back(), own.empty() ? 0 : own.back());
    const qint64 missing = qint64(own.size()) - matched.size();
    qint64 next = Renumbering::firstAfter(largest, missing, name);
    std::vector<std::pair<qint64, qint64>> changes;
    for (const qint64 id : own) {
        const auto same = matched.constFind(id);
        changes.emplace_back(id, same == matched.constEnd() ? next++ : *same);
    }
    Alignment::Count &count = mResult.counts[name];
    count.matched = matched.size();
    count.onlyFirst = qint64(first.size()) - matched.size();
    count.onlySecond = missing;
    mResult.ids.add(name, std::move(own), std::move(changes));
}

} // namespace

QStringList Alignment::remarks() const {
    QStringList lines = byGeometry;
    for (const auto &each : counts) {
        if (each.second.ambiguous > 0)
            lines.append(
                QStringLiteral("table %1: %2 rows have no counterpart, since several are called the same")
                    .arg(each.first, QString::number(each.second.ambiguous)));
    }
    return lines;
}

Alignment align(const StoreReader &one, const NamedNetwork &first, const StoreReader &other,
                const NamedNetwork &second, Matching matching) {
    return Matcher({one, first}, {other, second}, matching).run();
}

} // namespace moratools
