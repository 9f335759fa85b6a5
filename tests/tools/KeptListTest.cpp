#include "tools/sumo/kept/KeptList.h"
#include "tools/sumo/kept/Packed.h"

#include <gtest/gtest.h>

using namespace moratools;

namespace {

QStringList entriesOf(const KeptList &list) {
    QStringList entries;
    list.forEach([&entries](const KeptEntry &entry) { entries.append(entry.element.name + entry.of); });
    return entries;
}

} // namespace

TEST(KeptList, LongOnesAreInPartsThatDependOnTheEntriesAlone) {
    const KeptEntry large{{QStringLiteral("large"), {{QStringLiteral("a"), QString(600000, 'x')}}, {}}, {}};
    const KeptEntry small{{QStringLiteral("small"), {}, {}}, QStringLiteral("0f")};
    KeptList list;
    EXPECT_TRUE(list.isEmpty());
    for (const KeptEntry &entry : {large, small, large, small})
        list.add(entry);
    const QJsonArray json = list.toJson();
    ASSERT_EQ(json.size(), 2);
    EXPECT_TRUE(unpacked(json[0].toString()).startsWith(R"([{"e":["large",{"a":"xxx)"));
    EXPECT_EQ(unpacked(json[1].toString()), QByteArray(R"([{"e":["small"],"of":"0f"}])"));
    const QStringList all{QStringLiteral("large"), QStringLiteral("small0f"), QStringLiteral("large"),
                          QStringLiteral("small0f")};
    EXPECT_EQ(entriesOf(list), all);
    const KeptList again = KeptList::fromJson(json);
    EXPECT_EQ(entriesOf(again), all);
    EXPECT_EQ(again.toJson(), json);
}

TEST(KeptList, WhatIsNoListIsEmpty) {
    const QJsonValue hostile[] = {{},
                                  5,
                                  QStringLiteral("x"),
                                  QJsonArray{1, QJsonArray(), QStringLiteral("x")},
                                  packed("{}"),
                                  packed("[1, {}, {\"e\": 3}, {\"e\": [4, 5]}]")};
    for (const QJsonValue &json : hostile)
        EXPECT_TRUE(entriesOf(KeptList::fromJson(json)).isEmpty());
}
