#include "model/StoredJson.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <gtest/gtest.h>

namespace {

const QByteArray kText = R"({"b" : 1.50,"a":[true]})";
const QJsonObject kObject = QJsonDocument::fromJson(kText).object();

// What a host writes with a QJsonObject compiles and means the same.
TEST(StoredJson, StandsInForAnObject) {
    const StoredJson stored = StoredJson::fromText(kText);
    const QJsonObject &object = stored;
    EXPECT_EQ(object, kObject);
    EXPECT_EQ(stored, kObject);
    EXPECT_EQ(kObject, stored);
    EXPECT_EQ(stored.value(QStringLiteral("b")), 1.5);
    EXPECT_EQ(stored["b"], 1.5);
    EXPECT_TRUE(stored.contains(QLatin1String("a")));
    EXPECT_EQ(stored.keys(), kObject.keys());
    EXPECT_EQ((QJsonObject{{"nested", stored}}).value("nested"), kObject);
    const bool yes = true;
    EXPECT_EQ(yes ? stored : QJsonObject(), kObject);

    StoredJson assigned = stored;
    assigned = {{QStringLiteral("k"), QStringLiteral("v")}};
    EXPECT_EQ(assigned, (QJsonObject{{"k", "v"}}));
    assigned = {};
    EXPECT_TRUE(assigned.isEmpty());
    assigned = kObject;
    EXPECT_EQ(assigned, stored);
    EXPECT_EQ(stored.text(), kText);
}

TEST(StoredJson, AChangeGivesUpTheTextAndLeavesCopiesAlone) {
    StoredJson stored = StoredJson::fromText(kText);
    const StoredJson copy = stored;
    stored["b"] = 2;
    EXPECT_EQ(stored.text(), QByteArray(R"({"a":[true],"b":2})"));
    EXPECT_EQ(stored.value("b"), 2);
    EXPECT_TRUE(stored.contains(QStringLiteral("a")));
    EXPECT_NE(stored, copy);
    EXPECT_EQ(copy.text(), kText);
    EXPECT_EQ(copy, kObject);
}

TEST(StoredJson, ReadingAMemberChangesNothing) {
    StoredJson stored = StoredJson::fromText(kText);
    EXPECT_TRUE(stored["missing"].isUndefined());
    const QJsonValue known = stored[QStringView(u"a")];
    EXPECT_TRUE(known.isArray());
    EXPECT_EQ(stored.text(), kText);
    StoredJson other;
    other[QLatin1String("from")] = stored["a"];
    EXPECT_EQ(other.text(), QByteArray(R"({"from":[true]})"));
    EXPECT_EQ(stored.text(), kText);
}

TEST(StoredJson, DamagedTextReadsAsAnEmptyObjectAndIsKept) {
    for (const QByteArray &text : {QByteArray("{\"a\":"), QByteArray("[1]"), QByteArray("\xff")}) {
        const StoredJson stored = StoredJson::fromText(text);
        EXPECT_TRUE(stored.isEmpty());
        EXPECT_FALSE(stored.holdsNothing());
        EXPECT_EQ(stored.text(), text);
    }
    EXPECT_TRUE(StoredJson::fromText("{}").holdsNothing());
    EXPECT_TRUE(StoredJson::fromText({}).holdsNothing());
    EXPECT_TRUE(StoredJson().holdsNothing());
}

} // namespace
