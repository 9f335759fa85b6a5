#include "tests/host/Morastore.h"

#include <QColor>
#include <QImage>

#include <cmath>

// Pictures, pixel by pixel: a network of 220 by 8 m, drawn at ten pixels a metre.

namespace {

/// From the west two lanes, the left one for buses, lead to a single lane ten metres further on.
constexpr const char *kRoads = R"(<net>
<edge id="w" from="a" to="b">
 <lane id="w_0" index="0" speed="10" length="200" width="4" shape="0,0 200,0"/>
 <lane id="w_1" index="1" speed="10" length="200" width="4" allow="bus" shape="0,4 200,4"/></edge>
<edge id="e" from="b" to="c"><lane id="e_0" index="0" speed="10" length="10" width="4" shape="210,0 220,0"/></edge>
<junction id="a" x="0" y="0"/><junction id="b" x="205" y="0"/><junction id="c" x="220" y="0"/>
<connection from="w" to="e" fromLane="0" toLane="0" tl="b" linkIndex="0"/>
<connection from="w" to="e" fromLane="1" toLane="0" tl="b" linkIndex="1"/>
<tlLogic id="b" programID="0" offset="0"><phase duration="9" state="uy"/><phase duration="9" state="Gr"/></tlLogic>
</net>)";

constexpr const char *kTraffic = R"(<additional>
<e2Detector id="queue" lane="w_0" pos="20" endPos="60"/>
<e3Detector id="pass"><detEntry lane="w_0" pos="80"/><detExit lane="e_0" pos="9"/></e3Detector>
<vehicle id="v" depart="0"><route edges="e"/></vehicle>
<vehicle id="x" depart="0"><route edges="w e"/></vehicle>
</additional>)";

class Drawing : public Morastore {
protected:
    void SetUp() override {
        mStore = newStore();
        const Outcome imported =
            run({QStringLiteral("import"), mStore, write(QStringLiteral("roads.net.xml"), kRoads),
                 QStringLiteral("--additional"), write(QStringLiteral("traffic.xml"), kTraffic)});
        ASSERT_EQ(imported.exitCode, 0) << imported.err.toStdString();
    }
    QString draw(const char *name, const QStringList &options = {}) const {
        QString picture = file(QLatin1String(name));
        const Outcome outcome = run(QStringList{QStringLiteral("draw"), mStore, picture,
                                                QStringLiteral("--size"), QStringLiteral("2256")} +
                                    options);
        EXPECT_EQ(outcome.exitCode, 0) << outcome.err.toStdString();
        return picture;
    }

    QString mStore;
};

bool isLike(const QColor &a, const QColor &b) {
    return std::abs(a.red() - b.red()) + std::abs(a.green() - b.green()) + std::abs(a.blue() - b.blue()) < 24;
}

TEST_F(Drawing, EverythingIsWhereItStandsAndHasItsColour) {
    const QImage picture(draw("p.png"));
    ASSERT_EQ(picture.width(), 2256);
    // The margin is 28 pixels wide, and 54 more are left for the legend below.
    const int bottom = picture.height() - 28 - 54;
    constexpr QRgb paper = 0xfaf9f6, motorLane = 0x8b939e, busLane = 0xcf866a, junction = 0xe2e4e7,
                   edge = 0x6a6e76;
    constexpr QRgb departure = 0x0f8b6d, decision = 0x6a3d9a, red = 0xd62f2f, yellow = 0xf2b705;
    constexpr QRgb queue = 0xa35b94, curve = 0x819fc0; // half transparent, on a motor lane and on a junction
    const struct {
        double x, y;
        QRgb colour;
        const char *what;
    } places[] = {
        {10, 1, motorLane, "right lane"},
        {10, 5, busLane, "left lane"},
        {5, -2, edge, "right edge"},
        {5, 6, edge, "left edge, between the dashes of a divider"},
        {10, 6, edge, "left edge, on the dashes of a divider"},
        {5, 2, motorLane, "between the dashes of the divider"},
        {10, 2, junction, "dash of the divider, nearly white"},
        {202, 4.5, junction, "junction"},
        {203.3, 3, curve, "first half of the turn"},
        {205, 2, curve, "middle of the turn"},
        {202, 0, curve, "straight connection"},
        {200, 0, red, "red and yellow shows red"},
        {200, 4, yellow, "yellow"},
        {30, 0, queue, "queue before its counter"},
        {30, 1.5, motorLane, "beside the queue"},
        {70, 0, motorLane, "behind the counter"},
        {210.5, 0, decision, "decision point at the start of its link"},
        {208, 0, departure, "departure point below it"},
        {215, 4, paper, "beside the road"},
    };
    for (const auto &place : places) {
        const QColor drawn =
            picture.pixel(28 + int(std::lround(10 * place.x)), bottom - int(std::lround(10 * (place.y + 2))));
        EXPECT_TRUE(isLike(drawn, QColor(place.colour)))
            << place.what << " is " << drawn.name().toStdString();
    }
    // Ten metres are the longest round length below 180 pixels.
    const int bar = picture.height() - 28 - 26;
    EXPECT_LT(QColor(picture.pixel(2256 - 28 - 90, bar)).lightness(), 128);
    EXPECT_TRUE(isLike(QColor(picture.pixel(2256 - 28 - 170, bar)), QColor(paper)));
}

TEST_F(Drawing, TheLegendCountsEveryObjectOnce) {
    const QByteArray picture = read(draw("p.svg"));
    for (const char *label :
         {">queue counter (1)<", ">signal lamp (2)<", ">departure point (2)<", ">decision point (2)<",
          ">travel-time detector (1)<", ">2 links, 3 lanes, 1 connectors, 0.2 km<", ">10 m<"})
        EXPECT_TRUE(picture.contains(label)) << label;
}

// A river a kilometre away with a ship on it; a tram beside the road crosses it.
TEST_F(Drawing, WhatIsNoRoadIsDrawnSoOrLeftOut) {
    const QByteArray river =
        "<edge id=\"r\" from=\"a\" to=\"b\" type=\"waterway.river\"><lane id=\"r_0\" index=\"0\" allow=\"ship\" "
        "speed=\"3\" length=\"990\" width=\"40\" shape=\"100,10 100,1000\"/></edge>"
        "<edge id=\"t\" from=\"a\" to=\"b\" type=\"highway.primary\">"
        "<lane id=\"t_0\" index=\"0\" speed=\"3\" length=\"100\" width=\"8\" shape=\"50,500 150,500\"/>"
        "<lane id=\"t_1\" index=\"1\" allow=\"tram\" speed=\"3\" length=\"100\" width=\"8\" shape=\"50,508 "
        "150,508\"/></edge></net>";
    QByteArray roads = kRoads;
    roads.replace("</net>", river);
    const QString network = write(QStringLiteral("river.net.xml"), roads);
    const QString traffic = write(QStringLiteral("ship.xml"),
                                  "<routes><vType id=\"s\" vClass=\"ship\"/><vehicle id=\"v\" type=\"s\" "
                                  "depart=\"0\"><route edges=\"r\"/></vehicle></routes>");
    mStore = newStore(QStringLiteral("river"));
    ASSERT_EQ(run({QStringLiteral("import"), mStore, network, QStringLiteral("--routes"), traffic}).exitCode,
              0);
    EXPECT_EQ(row(mStore, QStringLiteral("select ifnull(linkType, ''), otherAttrsJson ->> '$.sumo.notRoad' "
                                         "from Link where LinkName = 'r'")),
              QVariantList({QString(), 1}));

    const QByteArray all = read(draw("all.svg"));
    for (const char *label :
         {">no road (2)<", ">departure point (1)<", ">4 links, 6 lanes, 1 connectors, 1.3 km<"})
        EXPECT_TRUE(all.contains(label)) << label;
    const QImage picture(draw("all.png"));
    const double scale = 2200.0 / 1002; // from the road's edge at -2 to the end of the river
    const auto at = [&](double x, double y) {
        const double left = (picture.width() - 220 * scale) / 2;
        return QColor(picture.pixel(int(std::lround(left + scale * x)),
                                    picture.height() - 28 - 54 - int(std::lround(scale * (y + 2)))));
    };
    EXPECT_TRUE(isLike(at(110, 900), QColor(0xc9, 0xd6, 0xe0)))
        << "river " << at(110, 900).name().toStdString();
    EXPECT_TRUE(isLike(at(110, 500), QColor(0x8b, 0x93, 0x9e)))
        << "bridge " << at(110, 500).name().toStdString();

    const QByteArray left = read(draw("roads.svg", {QStringLiteral("--roads-only")}));
    EXPECT_TRUE(left.contains(">3 links, 5 lanes, 1 connectors, 0.3 km<"));
    EXPECT_TRUE(left.contains(">no road (1)<")) << "the tram's lane";
    EXPECT_FALSE(left.contains("departure point"));
}

} // namespace

TEST_F(Drawing, AFindingHasARingAroundItsPlace) {
    // A lamp that stands at 200, 0 is for a lane from which nothing leads on.
    alter(mStore, {QStringLiteral("update SignalLamp set laneID = 3, toLaneID = 0 where x = 200 and y = 0")});
    const QString path = file(QStringLiteral("marked.png"));
    const Outcome outcome =
        run({QStringLiteral("check"), mStore, QStringLiteral("--rules"),
             QStringLiteral("signal-lamp.lane-leads-nowhere"), QStringLiteral("--picture"), path});
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err.toStdString();
    const QImage picture(path);
    ASSERT_EQ(picture.width(), 2400);
    // The plan fills the width but for what rounding the height takes from it.
    const double scale = (2400 - 2 * 28) / 220.0;
    const int y = picture.height() - 28 - 54 - int(std::lround(2 * scale));
    QList<int> ring;
    for (int x = 0; x < picture.width(); ++x) {
        if (isLike(QColor(picture.pixel(x, y)), QColor(0xe0, 0x8a, 0x00)))
            ring.append(x);
    }
    ASSERT_FALSE(ring.isEmpty());
    EXPECT_NEAR(ring.last() - ring.first(), 22, 3);
    EXPECT_NEAR(0.5 * (ring.first() + ring.last()), 28 + 200 * scale, 5);
}

TEST_F(Drawing, WhatDiffersIsMarkedWhereItIs) {
    const QString after = file(QStringLiteral("after"));
    ASSERT_TRUE(QFile::copy(mStore, after));
    alter(after, {QStringLiteral("update Link set limitSpeed = 20 where linkName = 'w'"),
                  QStringLiteral("delete from VehicleQueueCounter"),
                  QStringLiteral("update VehicleType set maxSpeed = 99 where vehicleTypeCode = 1")});
    const auto drawn = [&](const QString &one, const QString &other, const char *name) {
        QString path = file(QLatin1String(name));
        const Outcome outcome = run({QStringLiteral("diff"), one, other, QStringLiteral("--picture"), path});
        EXPECT_EQ(outcome.exitCode, 0) << outcome.err.toStdString();
        EXPECT_TRUE(outcome.err.contains(
            QStringLiteral("not in the picture: objects without a place that differ: 1")))
            << outcome.err.toStdString();
        return path;
    };
    const QImage picture(drawn(mStore, after, "differs.png"));
    ASSERT_EQ(picture.width(), 2400);
    const double scale = (2400 - 2 * 28) / 220.0;
    const auto line = [&](double y) {
        return picture.height() - 28 - 54 - int(std::lround((y + 2) * scale));
    };
    // The middle of a road of two lanes of 4 m, the right one of which is drawn along 0.
    EXPECT_TRUE(
        isLike(QColor(picture.pixel(28 + int(std::lround(150 * scale)), line(2))), QColor(0xe8, 0x95, 0)));
    const QVariantList place = row(mStore, QStringLiteral("select x, y from VehicleQueueCounter"));
    QList<int> ring;
    for (int x = 0; x < picture.width(); ++x) {
        if (isLike(QColor(picture.pixel(x, line(place[1].toDouble()))), QColor(0xd0, 0x20, 0x20)))
            ring.append(x);
    }
    ASSERT_FALSE(ring.isEmpty());
    EXPECT_NEAR(ring.last() - ring.first(), 22, 3);
    EXPECT_NEAR(0.5 * (ring.first() + ring.last()), 28 + place[0].toDouble() * scale, 5);

    const QByteArray back = read(drawn(after, mStore, "back.svg"));
    for (const char *label : {">changed (1)<", ">added (1)<"})
        EXPECT_TRUE(back.contains(label)) << label;
    EXPECT_FALSE(back.contains(">removed"));
}
