#include "model/GeometryJson.h"
#include "model/Link.h"
#include "model/NetContents.h"
#include "tests/support/Builders.h"
#include "tests/support/StoreFixture.h"

#include <QJsonArray>

#include <algorithm>
#include <functional>
#include <limits>

namespace {

class StorableValueTest : public StoreKindFixture {};

TEST_P(StorableValueTest, AnyTextAndAnyFiniteNumberComesBack) {
    const auto link = sampleLink(7);
    link->linkName = QStringLiteral("O'Brien \"ß\" \\ %1 :x ? 路网 \U0001F6A6 \t\n\u200f");
    link->length = std::numeric_limits<double>::denorm_min();
    link->curvature = -std::numeric_limits<double>::max();
    link->nonLinearCoefficient = 0.1;
    link->otherAttrsJson = {{QStringLiteral("nul \\"), QString(QChar::Null)},
                            {QStringLiteral("null"), QJsonValue::Null}};
    ASSERT_TRUE(DBTools::insertLink(gDB, kNet, link.get(), true));
    reopen();
    const std::unique_ptr<Link> read(DBTools::selectLinkByID(gDB, kNet, 7));
    ASSERT_TRUE(read);
    EXPECT_EQ(read->linkName, link->linkName);
    EXPECT_EQ(read->length, link->length);
    EXPECT_EQ(read->curvature, link->curvature);
    EXPECT_EQ(read->nonLinearCoefficient, 0.1);
    EXPECT_EQ(read->otherAttrsJson, link->otherAttrsJson);
}

TEST_P(StorableValueTest, WhatNoStoreKeepsIsRefusedBeforeItsStatementRuns) {
    const double infinity = std::numeric_limits<double>::infinity();
    const double nan = std::numeric_limits<double>::quiet_NaN();
    struct Case {
        const char *error;
        std::function<void(Link &)> spoil;
    };
    const Case cases[] = {
        {"linkName cannot be stored: it contains a NUL character",
         [](Link &link) { link.linkName = QString(QChar::Null) + QStringLiteral("Main Road"); }},
        {"linkName cannot be stored: it is not valid Unicode",
         [](Link &link) { link.linkName = QString(QChar(0xd83d)); }},
        {"linkName cannot be stored: it begins with a byte order mark",
         [](Link &link) { link.linkName = QChar(QChar::ByteOrderMark) + QStringLiteral("Main"); }},
        {"linkName cannot be stored: it begins with a byte order mark",
         [](Link &link) { link.linkName = QChar(QChar::ByteOrderSwapped) + QStringLiteral("Main"); }},
        {"linkName cannot be stored: it is longer than 1048576 characters",
         [](Link &link) { link.linkName = QString(1048577, QLatin1Char('x')); }},
        {"length cannot be stored: it is not a finite number", [&](Link &link) { link.length = nan; }},
        {"curvature cannot be stored: it is not a finite number",
         [&](Link &link) { link.curvature = -infinity; }},
    };
    for (const Case &spoilt : cases) {
        const auto link = sampleLink(7);
        spoilt.spoil(*link);
        ASSERT_TRUE(gDB.transaction());
        EXPECT_FALSE(DBTools::insertLink(gDB, kNet, link.get(), false)) << spoilt.error;
        EXPECT_EQ(count(QStringLiteral("Link")), 0) << "and the caller's transaction goes on";
        ASSERT_TRUE(gDB.rollback());
        const auto refusal =
            std::find_if(failures().cbegin(), failures().cend(), [](const CallDbResult &failure) {
                return failure.sql.startsWith(QLatin1String("insert into Link("));
            });
        ASSERT_NE(refusal, failures().cend());
        const QString error = QStringLiteral("The value of ") + QLatin1String(spoilt.error);
        EXPECT_EQ(refusal->error, error);
        clearFailures();

        NetContents whole;
        whole.links.push_back(sampleLink(7));
        spoilt.spoil(*whole.links.front());
        EXPECT_FALSE(DBTools::saveNet(gDB, kNet, whole, true)) << spoilt.error;
        ASSERT_EQ(failures().size(), 1) << spoilt.error;
        EXPECT_EQ(failures().first().error, error);
        clearFailures();
    }
    const auto line = sampleLink(7);
    line->centerLinePointsJson = geometryjson::fromPoints({{1, 2, 3}, {4, infinity, 6}});
    EXPECT_FALSE(DBTools::insertLink(gDB, kNet, line.get(), true));
    ASSERT_EQ(failures().size(), 1);
    EXPECT_EQ(
        failures().first().error,
        QStringLiteral("The value of centerLinePointsJson cannot be stored: it is not a finite number"));
    clearFailures();
    const auto link = sampleLink(8);
    link->otherAttrsJson = {{QStringLiteral("a"), QJsonArray({QJsonObject({{QStringLiteral("b"), nan}})})}};
    EXPECT_FALSE(DBTools::insertLink(gDB, kNet, link.get(), true));
    ASSERT_EQ(failures().size(), 1);
    EXPECT_EQ(failures().first().error,
              QStringLiteral("The value of otherAttrsJson cannot be stored: it is not a finite number"));
    EXPECT_EQ(count(QStringLiteral("Link")), 2) << "only the statements with such a value are left out";
}

TEST_P(StorableValueTest, TextThatIsNoUtf8IsKeptAsBytesOrRefused) {
    const QByteArray bytes("{\"a\":\"\xff\"}");
    const QByteArray marked("\xef\xbb\xbf{}");
    for (const QByteArray &text : {bytes, marked}) {
        for (const bool isWhole : {false, true}) {
            NetContents net;
            net.links.push_back(sampleLink(7));
            Link &link = *net.links.front();
            link.centerLinePointsJson = StoredJson::fromText(text);
            const bool written = isWhole ? DBTools::saveNet(gDB, kNet, net, true)
                                         : DBTools::insertLink(gDB, kNet, &link, true);
            EXPECT_EQ(written, !isPostgres());
            if (isPostgres()) {
                ASSERT_EQ(failures().size(), 1);
                EXPECT_EQ(failures().first().error,
                          QStringLiteral("The value of centerLinePointsJson cannot be stored: it ") +
                              (text == marked ? QStringLiteral("begins with a byte order mark")
                                              : QStringLiteral("is not valid UTF-8")));
            } else {
                EXPECT_EQ(rows(QStringLiteral("select hex(centerLinePointsJson) from Link")),
                          QStringList(QString::fromLatin1(text.toHex().toUpper())));
            }
            clearFailures();
            ASSERT_TRUE(DBTools::removeNetData(gDB, kNet, true));
        }
    }
}

TEST_P(StorableValueTest, NegativeZeroKeepsItsSignWhereTheEngineHasOne) {
    for (const bool isWhole : {false, true}) {
        NetContents net;
        net.links.push_back(sampleLink(7));
        Link &link = *net.links.front();
        link.addValue = -0.0;
        link.mlVertex.first()->x = -0.0;
        ASSERT_TRUE(isWhole ? DBTools::saveNet(gDB, kNet, net, true)
                            : DBTools::insertLink(gDB, kNet, &link, true));
        // SQLite stores a real that is whole as an integer, which has no sign.
        const QString zero = isPostgres() ? QStringLiteral("-0|-0") : QStringLiteral("0|0");
        EXPECT_EQ(
            rows(QStringLiteral("select cast(cast(addValue as %1) as varchar(9)), cast(cast(x as %1) as "
                                "varchar(9)) from Link, Vertex where vertexID = 71")
                     .arg(isPostgres() ? QStringLiteral("float8") : QStringLiteral("integer"))),
            QStringList(zero))
            << isWhole;
        ASSERT_TRUE(DBTools::removeNetData(gDB, kNet, true));
    }
}

TEST_P(StorableValueTest, AttributesOfANetworkAreRefusedToo) {
    const QJsonObject attributes = {{QStringLiteral("a"), std::numeric_limits<double>::infinity()}};
    const int before = count(QStringLiteral("Net"));
    EXPECT_FALSE(
        DBTools::insertNet(gDB, 2, QStringLiteral("b"), {}, QStringLiteral("x"), {}, attributes, true));
    ASSERT_EQ(DBTools::mlCallDbResult.size(), 1);
    EXPECT_EQ(DBTools::mlCallDbResult.first().error,
              QStringLiteral("The value of otherAttrsJson cannot be stored: it is not a finite number"));
    EXPECT_EQ(count(QStringLiteral("Net")), before);
}

INSTANTIATE_TEST_SUITE_P(Stores, StorableValueTest, testing::ValuesIn(kStoreKinds), storeKindName);

} // namespace
