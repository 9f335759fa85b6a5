#include "tests/tools/CompanionFile.h"
#include "tools/reports/Failure.h"
#include "tools/sumo/import/SignalPlan.h"

using namespace moratools;

namespace {

class Programme : public CompanionFile {
protected:
    QByteArray programme(const QByteArray &phases, const QByteArray &attributes = {}) {
        return "<tlLogic id=\"here\" programID=\"day\" type=\"static\" " + attributes + ">" + phases +
               "</tlLogic>";
    }
};

} // namespace

TEST_F(Programme, WhatCannotBeIsRefusedByProgrammeAndPhase) {
    const struct {
        QByteArray phases;
        QByteArray attributes;
        const char *expected;
    } table[] = {
        {"<phase duration=\"5\" state=\"r\"/><phase duration=\"1e12\" state=\"r\"/>",
         {},
         "a phase 1 of 1e12 s"},
        {"<phase duration=\"-5\" state=\"r\"/>", {}, "a phase 0 of -5 s"},
        {"<phase state=\"r\"/>", {}, "lacks the attribute \"duration\""},
        {"<phase duration=\"5\" state=\"rG\"/><phase duration=\"5\" state=\"rGr\"/>",
         {},
         "3 signals beside one with 2"},
        {"<phase duration=\"5\" state=\"rx\"/>",
         {},
         "a phase 0 whose state \"rx\" has the unknown letter \"x\""},
        {"<phase duration=\"5\" state=\"r\" next=\"1\"/>", {}, "after phase 0 with phase 1"},
        {"<phase duration=\"5\" state=\"r\" next=\"one\"/>", {}, "\"one\" is no number"},
        {"<phase duration=\"5\" state=\"r\"/>", "offset=\"-1e12\"", "an offset that no store can hold"},
        {"<phase duration=\"2e9\" state=\"r\"/><phase duration=\"2e9\" state=\"r\"/>",
         {},
         "a cycle that no store"},
    };
    for (const auto &entry : table) {
        try {
            read(programme(entry.phases, entry.attributes));
            ADD_FAILURE() << entry.expected;
        } catch (const Failure &failure) {
            EXPECT_TRUE(failure.message().contains(QLatin1String(entry.expected)))
                << failure.message().toStdString();
            EXPECT_TRUE(failure.message().contains(QStringLiteral("some.xml, line "))) << entry.expected;
        }
    }
    EXPECT_EQ(read(programme("<phase duration=\"5\" state=\"GgYyRrsuoO\" next=\"-1\"/>", "offset=\"-20\""))
                  .programmes.at(0)
                  .offset,
              -20);
}

TEST_F(Programme, ThePhasesThatRunAreTheCycle) {
    const auto phase = [](const char *duration, const char *next) {
        return "<phase duration=\"" + QByteArray(duration) + "\" state=\"r\" next=\"" + next + "\"/>";
    };
    const struct {
        QByteArray phases;
        std::vector<std::size_t> cycle;
        double start;
        qint64 alternatives;
    } table[] = {
        {phase("1", "") + phase("2", "") + phase("3", ""), {0, 1, 2}, 10, 0},
        {phase("1", "2") + phase("2", "") + phase("3", "0"), {0, 2}, 10, 0},
        {phase("1", "") + phase("2", "2 0") + phase("4", "1"), {1, 2}, 11, 1},
        {phase("1", "0") + phase("2", ""), {0}, 10, 0},
    };
    for (const auto &entry : table) {
        const SumoCompanions companions = read(programme(entry.phases, "offset=\"10\""));
        LeftOut leftOut;
        const SumoNet none;
        const SignalPlan plan = planSignals(none, companions, leftOut);
        ASSERT_EQ(plan.groups.size(), 1u);
        EXPECT_EQ(plan.groups[0].cycle, entry.cycle) << entry.phases.toStdString();
        EXPECT_EQ(plan.groups[0].start, entry.start) << entry.phases.toStdString();
        EXPECT_EQ(leftOut.count(), entry.alternatives) << entry.phases.toStdString();
    }
}
