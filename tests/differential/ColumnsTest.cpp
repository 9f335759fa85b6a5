#include "tests/differential/FieldWalk.h"
#include "tests/differential/KnownDifferences.h"
#include "tests/differential/RandomNet.h"
#include "tests/differential/StoredRows.h"
#include "tests/support/StoreFixture.h"

#include <QSet>
#include <QVariant>

using namespace differential;

// Every value stands in the column that has its name. Writing and reading alone would not notice two columns that have
// changed places: the same list of columns serves both.

namespace {

/// Where the objects of a list stand, by the way to them.
const QMap<QString, QString> kTables = {
    {QStringLiteral("links"), QStringLiteral("link")},
    {QStringLiteral("links.mlVertex"), QStringLiteral("vertex")},
    {QStringLiteral("links.mpStartNode"), QStringLiteral("node")},
    {QStringLiteral("links.mpEndNode"), QStringLiteral("node")},
    {QStringLiteral("links.mlLane"), QStringLiteral("lane")},
    {QStringLiteral("linkTypes"), QStringLiteral("linktype")},
    {QStringLiteral("guideArrows"), QStringLiteral("guidearrow")},
    {QStringLiteral("connectors"), QStringLiteral("connector")},
    {QStringLiteral("vehicleTypes"), QStringLiteral("vehicletype")},
    {QStringLiteral("compositions"), QStringLiteral("vehicleconstitutent")},
    {QStringLiteral("signalGroups"), QStringLiteral("signalgroup")},
    {QStringLiteral("signalGroups.mlPhase"), QStringLiteral("signalphase")},
    {QStringLiteral("signalLamps"), QStringLiteral("signallamp")},
    {QStringLiteral("departurePoints"), QStringLiteral("departurepoint")},
    {QStringLiteral("departurePoints.mlInterval"), QStringLiteral("departureinterval")},
    {QStringLiteral("decisionPoints"), QStringLiteral("decisionpoint")},
    {QStringLiteral("decisionPoints.mlRouting"), QStringLiteral("routing")},
    {QStringLiteral("decisionPoints.mlFlowByInterval.mlFlowRatio"), QStringLiteral("routingflowratio")},
    {QStringLiteral("vehicleDetectors"), QStringLiteral("vehicledetector")},
    {QStringLiteral("queueCounters"), QStringLiteral("vehiclequeuecounter")},
    {QStringLiteral("travelDetectors"), QStringLiteral("vehicletraveldetector")},
    {QStringLiteral("collectors"), QStringLiteral("vehicledrivinfocollecter")},
    {QStringLiteral("busStations"), QStringLiteral("busstation")},
    {QStringLiteral("busLines"), QStringLiteral("busline")},
    {QStringLiteral("busLines.mlStationLine"), QStringLiteral("busstationline")},
    {QStringLiteral("busLines.mlStationLine.mlPassengerArriving"),
     QStringLiteral("busstationpassengerarriving")},
    {QStringLiteral("speedAreas"), QStringLiteral("reducespeedarea")},
    {QStringLiteral("speedAreas.mlSpeedInterval"), QStringLiteral("reducespeedinterval")},
    {QStringLiteral("accidentZones"), QStringLiteral("accidentzone")},
    {QStringLiteral("roadWorkZones"), QStringLiteral("roadworkzone")},
    {QStringLiteral("carFollowing"), QStringLiteral("drivefollowedmodelparam")},
    {QStringLiteral("laneChanging"), QStringLiteral("changelanemodelparam")},
};

/// What a save does not take from the object: the edges of a link are those of its outer lanes, and a ratio starts
/// where the interval before it ends.
const QSet<QString> kDerived = {QStringLiteral("link.leftbreakpointsjson"),
                                QStringLiteral("link.rightbreakpointsjson"),
                                QStringLiteral("routingflowratio.startdatetime")};

const QSet<QString> kTranslated = {QStringLiteral("linktype.typename"),
                                   QStringLiteral("vehicletype.vehicletypename")};

/// The values of one object, but not of what it owns, and the first of its ids.
class OwnValues : public FieldWalk<OwnValues> {
public:
    template <class Value>
    void value(const char *name, const Value &value) {
        values.insert(QString::fromLatin1(name).toLower(), QVariant::fromValue(value));
    }
    void value(const char *name, const StoredJson &json) {
        if (!json.holdsNothing())
            value(name, json.text());
    }
    void word(const char *name, const QString &text) { value(name, text); }
    template <class Value>
    void id(const char *name, const Value &id) {
        if (idName.isEmpty())
            idName = QString::fromLatin1(name).toLower();
        value(name, id);
    }
    template <class List>
    void list(const char *, const List &) {}
    template <class Object>
    void part(const char *, Object *) {}

    QMap<QString, QVariant> values;
    QString idName;
};

/// Compares each object with its row.
class ColumnCheck : public FieldWalk<ColumnCheck> {
public:
    ColumnCheck(const QMap<QString, TableRows> &rows, QSet<QString> &seen) : mRows(rows), mSeen(seen) {}

    template <class Value>
    void value(const char *, const Value &) {}
    template <class Value>
    void word(const char *, const Value &) {}
    template <class List>
    void list(const char *name, List &objects) {
        mPath.append(QLatin1String(name));
        for (auto &object : objects)
            check(object);
        FieldWalk::list(name, objects);
        mPath.removeLast();
    }
    template <class Object>
    void part(const char *name, Object *object) {
        mPath.append(QLatin1String(name));
        check(object);
        FieldWalk::part(name, object);
        mPath.removeLast();
    }

private:
    static void check(long) {}
    template <class Object>
    void check(std::unique_ptr<Object> &object) {
        check(object.get());
    }
    template <class Object>
    std::enable_if_t<std::is_class_v<Object>> check(Object &object) {
        check(&object);
    }
    template <class Object>
    void check(Object *object) {
        const QString table = kTables.value(mPath.join(QLatin1Char('.')));
        if (table.isEmpty())
            return;
        OwnValues own;
        fields(own, *object);
        const QString id = own.values.value(own.idName).toString();
        for (const QMap<QString, QString> &row : mRows.value(table)) {
            if (row.value(own.idName) == id)
                return compare(table, own.values, row);
        }
        ADD_FAILURE() << "no row " << id.toStdString() << " in " << table.toStdString();
    }
    void compare(const QString &table, const QMap<QString, QVariant> &values,
                 const QMap<QString, QString> &row) {
        for (auto value = values.cbegin(); value != values.cend(); ++value) {
            const QString place = table + QLatin1Char('.') + value.key();
            if (!row.contains(value.key()) || kDerived.contains(place))
                continue;
            mSeen.insert(place);
            const QVariant expected =
                kTranslated.contains(place) ? QVariant(wordOfTheStore(value->toString())) : *value;
            EXPECT_TRUE(isStored(expected, row.value(value.key())))
                << place.toStdString() << ": " << row.value(value.key()).toStdString();
        }
    }
    /// Whether a literal of SQL is the value.
    static bool isStored(const QVariant &value, const QString &literal) {
        if (value.userType() == qMetaTypeId<QString>())
            return literal == QLatin1Char('\'') +
                                  value.toString().replace(QLatin1Char('\''), QLatin1String("''")) +
                                  QLatin1Char('\'');
        if (value.userType() == QMetaType::Bool)
            return literal == (value.toBool() ? QStringLiteral("'T'") : QStringLiteral("'F'"));
        if (value.userType() == QMetaType::QByteArray)
            return literal ==
                   QStringLiteral("X'%1'").arg(QString::fromLatin1(value.toByteArray().toHex().toUpper()));
        return literal.toDouble() == value.toDouble();
    }

    const QMap<QString, TableRows> &mRows;
    QSet<QString> &mSeen;
    QStringList mPath;
};

class ColumnsTest : public StoreKindFixture {};

TEST_P(ColumnsTest, HaveTheValuesOfTheirNames) {
    QSet<QString> seen;
    NetPlan plan;
    plan.severalNets = hasSeveralNets();
    for (plan.seed = 1; plan.seed <= 9; ++plan.seed) {
        openNewStore();
        const auto net = RandomNet(plan).make();
        ASSERT_TRUE(DBTools::saveNet(gDB, kNet, *net, true));
        const auto rows = storedRows(kNet, hasSeveralNets());
        ColumnCheck check(rows, seen);
        fields(check, *net);
    }
    EXPECT_EQ(seen.size(), 246) << "columns that have the name of a field";
}

INSTANTIATE_TEST_SUITE_P(Stores, ColumnsTest, testing::ValuesIn(kFileKinds), storeKindName);

} // namespace
