#include "tests/host/Morastore.h"

// What messages say of names and paths.

namespace {

/// The crossing with a road "%1_in" and a programme "%2"; its first lamp is one that the programme lacks.
QByteArray crossingOfPlaceholders() {
    QFile file(kExample);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    QByteArray text = file.readAll();
    text.replace("west_in", "%1_in").replace("\"market\"", "\"%2\"");
    const int first = text.indexOf("linkIndex=\"0\"");
    EXPECT_GT(first, 0);
    return text.replace(first, 13, "linkIndex=\"99\"");
}

} // namespace

TEST_F(Morastore, NamesThatLookLikePlaceholdersStandInMessagesAsTheyAre) {
    const QString name = QStringLiteral("%2 of 55");
    const QByteArray crossing = crossingOfPlaceholders();
    const QString store = newStore(QStringLiteral("%1 %2.mora"));
    const QString other = newStore(QStringLiteral("%2 %3.mora"));
    const Outcome imported =
        run({QStringLiteral("import"), store, write(QStringLiteral("%3 %4.xml"), crossing),
             QStringLiteral("--name"), name});
    EXPECT_TRUE(imported.out.startsWith(QLatin1String("network 1 \"%2 of 55\": 13 links, 19 connectors\n")))
        << imported.out.toStdString();
    EXPECT_TRUE(imported.err.contains(QLatin1String("programme \"%2\" has no signal 99)")))
        << imported.err.toStdString();
    EXPECT_TRUE(imported.err.contains(QLatin1String("(%3 %4.xml, line "))) << imported.err.toStdString();
    EXPECT_EQ(row(store, QStringLiteral("select count(*) from SignalLamp where name = '%2:1'")),
              QVariantList{1});

    const Outcome copied = run({QStringLiteral("copy"), store, other});
    EXPECT_TRUE(copied.out.startsWith(QLatin1String("network 1 \"%2 of 55\": "))) << copied.out.toStdString();
    EXPECT_FALSE(copied.out.contains(QLatin1String("%3"))) << copied.out.toStdString();
    EXPECT_TRUE(run({QStringLiteral("digest"), other}).out.endsWith(QLatin1String("  1 %2 of 55\n")));
    EXPECT_TRUE(run({QStringLiteral("info"), other})
                    .out.startsWith(QStringLiteral("store       %1\ngeneration  6\n").arg(other)));
    EXPECT_TRUE(run({QStringLiteral("remove"), other, QStringLiteral("1"), QStringLiteral("--yes")})
                    .out.startsWith(QLatin1String("network 1 \"%2 of 55\" is gone:\n")));
    expectSentence(run({QStringLiteral("remove"), other, QStringLiteral("%1 %2")}),
                   QStringLiteral("\"%1 %2\""));

    QByteArray dangling = crossing;
    dangling.replace("</net>",
                     "<connection from=\"%1_in\" to=\"market_quay\" fromLane=\"9\" toLane=\"0\"/></net>");
    expectSentence(
        run({QStringLiteral("import"), other, write(QStringLiteral("%2.xml"), dangling)}),
        QStringLiteral("the connection from \"%1_in\" to \"market_quay\" names lane 9 of edge \"%1_in\""));
    expectSentence(
        run({QStringLiteral("import"), other, write(QStringLiteral("%3.xml"), crossing.left(20000))}),
        QStringLiteral("%3.xml, line "));
}
