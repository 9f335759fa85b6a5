#include "tools/kinds/Comparison.h"
#include "tests/differential/FieldWalk.h"
#include "tests/differential/RandomNet.h"
#include "tools/kinds/Description.h"

#include <QDateTime>
#include <QJsonArray>
#include <QSet>
#include <gtest/gtest.h>

#include <cmath>
#include <functional>

using namespace differential;
using namespace moratools;

// No field of an object may be missing where objects are compared or shown. What their fields are says the list that
// the differential tests keep by hand.

namespace {

/// Goes through the values of objects and changes one: the first that it has not changed before.
class OneChange : public FieldWalk<OneChange> {
public:
    explicit OneChange(QSet<QString> &done) : mDone(done) {}

    template <class Value>
    void value(const char *name, Value &value) {
        const QString field = (mPath + QStringList(QLatin1String(name))).join(QLatin1Char('.'));
        if (!mField.isEmpty() || mDone.contains(field))
            return;
        mDone.insert(field);
        mField = field;
        const Value before = value;
        mUndo = [&value, before] { value = before; };
        change(value);
    }
    void word(const char *name, QString &text) { value(name, text); }
    template <class Value>
    void id(const char *name, Value &id) {
        value(name, id);
    }
    template <class List>
    void list(const char *name, List &objects) {
        mPath.append(QLatin1String(name));
        FieldWalk::list(name, objects);
        mPath.removeLast();
    }
    template <class Object>
    void part(const char *name, Object *object) {
        mPath.append(QLatin1String(name));
        FieldWalk::part(name, object);
        mPath.removeLast();
    }
    template <class Object>
    void optional(const char *name, std::optional<Object> &object) {
        mPath.append(QLatin1String(name));
        FieldWalk::optional(name, object);
        mPath.removeLast();
    }

    /// What was changed; empty when nothing was left to change.
    QString field() const { return mField; }
    void undo() const { mUndo(); }

private:
    template <class Number>
    static void change(Number &number) {
        number += 1;
    }
    static void change(bool &flag) { flag = !flag; }
    static void change(QString &text) { text += QLatin1Char('!'); }
    static void change(QByteArray &bytes) { bytes += '!'; }
    static void change(QDateTime &time) { time = time.addDays(1); }
    static void change(StoredJson &json) {
        const QJsonObject point{
            {QStringLiteral("x"), 1.5}, {QStringLiteral("y"), 2.5}, {QStringLiteral("z"), 3.5}};
        json = StoredJson(QJsonObject{{QStringLiteral("data"), QJsonArray{point}}});
    }

    QSet<QString> &mDone;
    QStringList mPath;
    QString mField;
    std::function<void()> mUndo;
};

NetPlan planOf(int seed) {
    NetPlan plan;
    plan.seed = quint32(seed);
    return plan;
}

constexpr int kSeeds = 12;

/// The fields of which a change goes unseen in random networks; @p sees(net, same) is asked for each field once.
template <class Sees>
QStringList unseen(QSet<QString> &fields, const Sees &sees) {
    QStringList missed;
    for (int seed = 1; seed <= kSeeds; ++seed) {
        const auto net = RandomNet(planOf(seed)).make();
        const auto same = RandomNet(planOf(seed)).make();
        EXPECT_FALSE(sees(*net, *same)) << "a network differs from itself";
        for (;;) {
            OneChange change(fields);
            differential::fields(change, *net);
            if (change.field().isEmpty())
                break;
            if (!sees(*net, *same))
                missed.append(change.field());
            change.undo();
        }
    }
    missed.sort();
    return missed;
}

/// Ids of owners, which the objects stand under, and restrictions, which no import makes.
const QStringList kUnseen = {QStringLiteral("accidentZones.mlLane.zoneId"),
                             QStringLiteral("busLines.mlStationLine.busLineID"),
                             QStringLiteral("compositions.mlDetail.vehicleConsCode"),
                             QStringLiteral("links.mlLane.mlLimitVehicle.code"),
                             QStringLiteral("links.mlLane.mlLimitVehicle.name"),
                             QStringLiteral("roadWorkZones.mlLane.zoneId"),
                             QStringLiteral("speedAreas.mlSpeedInterval.reduceSpeedAreaID"),
                             QStringLiteral("speedAreas.mlSpeedVehiType.reduceSpeedAreaID")};

template <class T>
void append(QJsonArray &all, const Objects<T> &objects) {
    for (const auto &object : objects)
        all.append(describe(*object).fields);
}
template <class T>
void append(QJsonArray &all, const QList<T> &objects) {
    for (const T &object : objects)
        all.append(describe(object).fields);
}

QJsonArray descriptionsOf(const NetContents &net) {
    QJsonArray all;
    const TrafficObjects &traffic = net.traffic;
    append(all, net.links);
    append(all, net.connectors);
    append(all, net.guideArrows);
    append(all, net.linkTypes);
    append(all, net.settings.carFollowing);
    append(all, net.settings.laneChanging);
    all.append(describe(*net.settings.simulation).fields);
    all.append(describe(*net.settings.scene).fields);
    append(all, traffic.vehicleTypes);
    append(all, traffic.compositions);
    append(all, traffic.departurePoints);
    append(all, traffic.decisionPoints);
    append(all, traffic.signalGroups);
    append(all, traffic.signalLamps);
    append(all, traffic.vehicleDetectors);
    append(all, traffic.queueCounters);
    append(all, traffic.travelDetectors);
    append(all, traffic.collectors);
    append(all, traffic.busStations);
    append(all, traffic.busLines);
    append(all, traffic.speedAreas);
    append(all, traffic.accidentZones);
    append(all, traffic.roadWorkZones);
    return all;
}

} // namespace

TEST(Comparison, SeesEveryFieldOfRoadsAndTraffic) {
    QSet<QString> fields;
    const QStringList missed = unseen(fields, [](const NetContents &net, const NetContents &same) {
        return !compareNetworks(net, same, true).isEqual();
    });
    QStringList expected = kUnseen;
    for (const QString &field : qAsConst(fields)) {
        // What no import writes is not compared.
        for (const char *list : {"carFollowing.", "guideArrows.", "laneChanging.", "linkTypes.",
                                 "routeLanes.", "simulation.", "scene."}) {
            if (field.startsWith(QLatin1String(list)))
                expected.append(field);
        }
    }
    expected.sort();
    EXPECT_EQ(missed.join(QLatin1Char('\n')).toStdString(), expected.join(QLatin1Char('\n')).toStdString());
    EXPECT_GE(fields.size(), 294);
}

TEST(Comparison, SeesWhatIsMissingOnEitherSide) {
    for (int seed = 1; seed <= kSeeds; ++seed) {
        const auto net = RandomNet(planOf(seed)).make();
        const auto same = RandomNet(planOf(seed)).make();
        const auto expectSeen = [&](const char *what, auto &objects) {
            if (objects.empty())
                return;
            auto last = std::move(objects.back());
            objects.pop_back();
            EXPECT_FALSE(compareNetworks(*net, *same, true).isEqual()) << what;
            EXPECT_FALSE(compareNetworks(*same, *net, true).isEqual()) << what;
            objects.push_back(std::move(last));
        };
        TrafficObjects &traffic = net->traffic;
        expectSeen("link", net->links);
        expectSeen("connector", net->connectors);
        expectSeen("vehicle type", traffic.vehicleTypes);
        expectSeen("composition", traffic.compositions);
        expectSeen("departure point", traffic.departurePoints);
        expectSeen("decision point", traffic.decisionPoints);
        expectSeen("signal group", traffic.signalGroups);
        expectSeen("signal lamp", traffic.signalLamps);
        expectSeen("vehicle detector", traffic.vehicleDetectors);
        expectSeen("queue counter", traffic.queueCounters);
        expectSeen("travel-time detector", traffic.travelDetectors);
        expectSeen("collector", traffic.collectors);
        expectSeen("station", traffic.busStations);
        expectSeen("line", traffic.busLines);
        expectSeen("speed area", traffic.speedAreas);
        expectSeen("accident zone", traffic.accidentZones);
        expectSeen("road-work zone", traffic.roadWorkZones);
        for (const auto &link : net->links)
            expectSeen("lane", link->mlLane);
        for (const auto &connector : net->connectors)
            expectSeen("lane connector", connector->mlLaneConnector);
    }
}

TEST(Comparison, ComparesNumbersBitForBit) {
    const auto net = RandomNet(planOf(1)).make();
    const auto same = RandomNet(planOf(1)).make();
    double &ours = net->links.front()->mlVertex.first()->z;
    double &theirs = same->links.front()->mlVertex.first()->z;
    for (const auto &[a, b] : {std::pair(0.0, -0.0), std::pair(1.0, std::nextafter(1.0, 2.0))}) {
        ours = a;
        theirs = b;
        EXPECT_EQ(compareNetworks(*net, *same, true).differences, 1) << b;
        theirs = a;
        EXPECT_TRUE(compareNetworks(*net, *same, true).isEqual());
    }
    net->record.isDefault = !same->record.isDefault;
    EXPECT_EQ(compareNetworks(*net, *same, true).first.size(), 1);
}

TEST(Description, HasEveryField) {
    QSet<QString> fields;
    const QStringList missed = unseen(fields, [](const NetContents &net, const NetContents &same) {
        return descriptionsOf(net) != descriptionsOf(same);
    });
    QStringList expected = kUnseen + QStringList(QStringLiteral("links.mlLane.linkID"));
    for (const char *field : {"connID", "laneID1", "laneID2", "routingID"}) // shown by no kind
        expected.append(QLatin1String("routeLanes.") + QLatin1String(field));
    expected.sort();
    EXPECT_EQ(missed.join(QLatin1Char('\n')).toStdString(), expected.join(QLatin1Char('\n')).toStdString());
}
