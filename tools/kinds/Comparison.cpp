#include "tools/kinds/Comparison.h"

#include "model/Description.h"
#include "model/GeometryJson.h"
#include "model/SpecialWords.h"
#include "store/catalogue/Catalogue.h"

#include <QHash>

#include <cmath>

namespace moratools {

namespace {

constexpr int kSentences = 20;

bool isJson(const QVariant &value) {
    return value.userType() == qMetaTypeId<StoredJson>();
}

QString shown(const QVariant &value) {
    if (isJson(value))
        return QString::fromUtf8(value.value<StoredJson>().text());
    if (value.userType() == QMetaType::Double) {
        const double number = value.toDouble();
        return number == 0 && std::signbit(number) ? QStringLiteral("-0") : QString::number(number, 'g', 17);
    }
    if (value.userType() == QMetaType::QString)
        return QLatin1Char('"') + value.toString() + QLatin1Char('"');
    return value.isValid() ? value.toString() : QStringLiteral("none");
}

/// Whether a field is the line of a road's or a lane's geometry, by its name.
bool isGeometry(const QString &field) {
    return field.endsWith(QLatin1String("Points"));
}

/// Compares descriptions down to their single values.
class Comparer {
public:
    /// @param laneConnectorGeometry whether the store keeps it.
    Comparer(Comparison &result, bool laneConnectorGeometry, const SpecialWords &words)
        : mResult(result), mLaneConnectorGeometry(laneConnectorGeometry), mWords(words) {}

    const SpecialWords &words() const { return mWords; }

    /// @param isRoad the numbers of its points are coordinates, and those of its parts count.
    void object(const QString &path, const QVariantMap &written, const QVariantMap &read, bool isRoad) {
        mIsRoad = isRoad;
        map(path, written, read);
    }

    void value(const QString &path, const QVariant &written, const QVariant &read) {
        ++mResult.fields;
        if (!isSameField(written, read))
            mResult.differ(path, shown(written), shown(read));
    }

private:
    void map(const QString &path, const QVariantMap &written, const QVariantMap &read) {
        QVariantMap either = written;
        either.insert(read);
        for (auto field = either.constBegin(); field != either.constEnd(); ++field)
            member(path + QLatin1Char(' ') + field.key(), field.key(), written.value(field.key()),
                   read.value(field.key()));
    }

    void member(const QString &path, const QString &field, const QVariant &written, const QVariant &read) {
        if (field == QLatin1String("laneConnectors"))
            laneConnectors(path, written.toList(), read.toList());
        else if (written.userType() == QMetaType::QVariantMap && read.userType() == QMetaType::QVariantMap)
            map(path, written.toMap(), read.toMap());
        else if (written.userType() == QMetaType::QVariantList && read.userType() == QMetaType::QVariantList)
            list(path, written.toList(), read.toList());
        else if (isGeometry(field) && isJson(written) && isJson(read))
            geometry(path, written.value<StoredJson>(), read.value<StoredJson>());
        else {
            mResult.coordinates += mIsRoad && field.size() == 1;
            value(path, written, read);
        }
    }

    void list(const QString &path, const QVariantList &written, const QVariantList &read) {
        if (mIsRoad || written.size() != read.size())
            value(path + QStringLiteral(" (number)"), written.size(), read.size());
        for (int i = 0; i < written.size() && i < read.size(); ++i)
            member(path + QStringLiteral(" %1").arg(i + 1), {}, written.at(i), read.at(i));
    }

    void geometry(const QString &path, const StoredJson &written, const StoredJson &read) {
        const GeometryLine a = geometryjson::points(written);
        const GeometryLine b = geometryjson::points(read);
        value(path + QStringLiteral(" (number)"), a.size(), b.size());
        for (int i = 0; i < a.size() && i < b.size(); ++i) {
            mResult.coordinates += 3;
            value(path, a.at(i).x, b.at(i).x);
            value(path, a.at(i).y, b.at(i).y);
            value(path, a.at(i).z, b.at(i).z);
        }
    }

    /// By the lanes that they join.
    void laneConnectors(const QString &path, const QVariantList &written, const QVariantList &read) {
        value(path + QStringLiteral(" (number)"), written.size(), read.size());
        QHash<QString, QVariantMap> readByLanes;
        for (const QVariant &each : read) {
            QVariantMap fields = each.toMap();
            readByLanes.insert(takeLanes(fields), fields);
        }
        for (const QVariant &each : written) {
            QVariantMap fields = each.toMap();
            const QString lanes = takeLanes(fields);
            const auto other = readByLanes.constFind(lanes);
            if (other == readByLanes.constEnd())
                mResult.differ(path, lanes, QStringLiteral("none"));
            else
                map(path + QLatin1Char(' ') + lanes, fields, *other);
        }
    }

    /// Takes out what lane connectors are matched by, and what the store does not keep of them.
    QString takeLanes(QVariantMap &fields) const {
        const QString from = fields.take(QStringLiteral("startLane")).toString();
        const QString to = fields.take(QStringLiteral("endLane")).toString();
        for (const QString &field : fields.keys()) {
            if (isGeometry(field) && !mLaneConnectorGeometry)
                fields.remove(field);
        }
        return QStringLiteral("%1 to %2").arg(from, to);
    }

    Comparison &mResult;
    bool mLaneConnectorGeometry;
    const SpecialWords &mWords;
    bool mIsRoad = false;
};

/// A lane says of which link it is, too; descriptions do not.
void compareOwners(const QString &path, const Link &written, const Link &read, Comparer &compare) {
    for (int i = 0; i < written.mlLane.size() && i < read.mlLane.size(); ++i)
        compare.value(path + QStringLiteral(" lanes %1 linkID").arg(i + 1),
                      qlonglong(written.mlLane.at(i)->linkID), qlonglong(read.mlLane.at(i)->linkID));
}
template <class T>
void compareOwners(const QString &, const T &, const T &, Comparer &) {}

/// An object as it reads back.
template <class T>
Description asRead(const T &object, const SpecialWords &) {
    return describe(object);
}
/// A name that happens to be one of the dictionary's stored words is read as its displayed one.
Description asRead(const VehicleType &type, const SpecialWords &words) {
    VehicleType shown = type;
    shown.vehicleTypeName = words.trEnToZh(type.vehicleTypeName);
    return describe(shown);
}

/// Compares the objects of a kind by their ids.
template <class T>
void compareKind(const char *table, const Objects<T> &written, const Objects<T> &read, Comparison &result,
                 Comparer &compare, bool isRoad = false) {
    const QString kind = QLatin1String(catalogue::kindIn(QLatin1String(table))->word);
    QHash<qint64, const T *> readById;
    for (const auto &object : read)
        readById.insert(describe(*object).id, object.get());
    for (const auto &object : written) {
        const Description description = asRead(*object, compare.words());
        const QString path =
            QStringLiteral("%1 %2 \"%3\"").arg(kind, QString::number(description.id), description.name);
        const T *other = readById.value(description.id);
        if (!other) {
            result.differ(path, QStringLiteral("one"), QStringLiteral("none"));
            continue;
        }
        compare.object(path, description.fields, asRead(*other, compare.words()).fields, isRoad);
        compareOwners(path, *object, *other, compare);
    }
    compare.value(QStringLiteral("number of objects (%1)").arg(kind), qlonglong(written.size()),
                  qlonglong(read.size()));
}

} // namespace

void Comparison::differ(const QString &field, const QString &written, const QString &read) {
    ++differences;
    if (first.size() < kSentences)
        first.append(QStringLiteral("%1 was written as %2 and read as %3").arg(field, written, read));
}

Comparison compareNetworks(const NetworkObjects &written, const NetworkObjects &read,
                           bool laneConnectorGeometry, const SpecialWords &words) {
    Comparison result;
    Comparer compare(result, laneConnectorGeometry, words);
    compare.object(QStringLiteral("network \"%1\"").arg(written.record.name), describe(written.record).fields,
                   describe(read.record).fields, false);
    compareKind("Link", written.links, read.links, result, compare, true);
    compareKind("Connector", written.connectors, read.connectors, result, compare, true);
    TrafficObjects::forEachKind([&](const char *table, const char *, auto list) {
        compareKind(table, written.traffic.*list, read.traffic.*list, result, compare);
    });
    return result;
}

} // namespace moratools
