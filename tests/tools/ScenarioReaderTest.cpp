#include "tools/sumo/reader/ScenarioReader.h"
#include "tests/tools/CompanionFile.h"
#include "tools/reports/Failure.h"

#include <QDir>

using namespace moratools;

namespace {

class Scenario : public CompanionFile {
protected:
    SumoScenario scenario(const QByteArray &content) {
        return readScenario(write(content, QStringLiteral("configuration")));
    }
    /// Paths as they stand in the configuration's folder.
    QString beside(const QStringList &paths) const {
        QStringList names;
        for (const QString &path : paths)
            names.append(QDir(mFolder.path()).relativeFilePath(path));
        return names.join(QLatin1Char(' '));
    }
};

} // namespace

TEST_F(Scenario, OptionsStandInGroupsOrAloneAndAsAttributesOrTexts) {
    const QByteArray files[] = {
        "<input><net-file value=\"n.net.xml\"/><route-files value=\" a.xml , sub/b.xml,\"/>"
        "<additional-files value=\"c.xml\"/></input><time><begin value=\"0:01:00\"/><end value=\"160\"/>"
        "<step-length value=\"0.5\"/></time><random><seed value=\"7\"/></random>",
        "<n v=\"n.net.xml\"/><routes>a.xml,sub/b.xml</routes><a value=\"c.xml\"/><b value=\"60\"/><e>160</e>"
        "<step-length value=\".5\"/><seed value=\"7\"/><processing/>"};
    for (const QByteArray &content : files) {
        const SumoScenario read = scenario(content);
        EXPECT_EQ(beside({read.network}), QStringLiteral("n.net.xml"));
        EXPECT_EQ(beside(read.routes), QStringLiteral("a.xml sub/b.xml"));
        EXPECT_EQ(beside(read.additional), QStringLiteral("c.xml"));
        EXPECT_EQ(read.begin, 60);
        EXPECT_EQ(read.end, 160);
        EXPECT_EQ(read.stepLength, 0.5);
        EXPECT_EQ(read.seed, 7);
        ASSERT_EQ(read.options.size(), 4u);
        EXPECT_EQ(read.options[1].first, QStringLiteral("end"));
        EXPECT_EQ(read.options[1].second, QStringLiteral("160"));
    }
}

TEST_F(Scenario, WhatDoesNotSayWhatToRunIsRefused) {
    const struct {
        const char *content;
        const char *expected;
    } table[] = {
        {"<input><route-files value=\"a.xml\"/></input>", "no net-file is named"},
        {"<net-file value=\"n\"/><end value=\"5\"/><time><end value=\"6\"/></time>",
         "\"end\" occurs a second time"},
        {"<net-file value=\"n\"/><begin value=\"soon\"/>", "\"soon\", which is no time"},
        {"<net-file value=\"n\"/><begin value=\"-5\"/>", "\"-5\", which is no time"},
    };
    for (const auto &entry : table) {
        try {
            scenario(entry.content);
            ADD_FAILURE() << entry.content;
        } catch (const Failure &failure) {
            EXPECT_TRUE(failure.message().contains(QLatin1String(entry.expected)))
                << failure.message().toStdString();
        }
    }
    EXPECT_THROW(readScenario(write("", QStringLiteral("routes"))), Failure);
    EXPECT_FALSE(scenario("<net-file value=\"n\"/><end value=\"-1\"/>").end) << "SUMO's word for no end";
}
