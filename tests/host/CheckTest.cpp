#include "tests/host/Morastore.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

// morastore check from outside: what it says, and with which exit code.

namespace {

class Check : public Morastore {
protected:
    void SetUp() override {
        mStore = newStore();
        ASSERT_EQ(run({QStringLiteral("import"), mStore, kExample}).exitCode, 0);
    }
    Outcome check(const QStringList &options = {}) const {
        return run(QStringList{QStringLiteral("check"), mStore} + options);
    }
    /// Lanes 1 to 12 belong to no link, and the counter of links is behind.
    void damage() {
        alter(mStore, {QStringLiteral("update Lane set linkID = 90 where laneID <= 12"),
                       QStringLiteral("update IDGenerater set ID = 12 where TableName = 'Link'")});
    }

    QString mStore;
    const QStringList mReferences{QStringLiteral("--rules"), QStringLiteral("references,counter")};
};

} // namespace

TEST_F(Check, AWrongNetworkIsToldByRuleWithTheFirstTenAndExitCodeThree) {
    EXPECT_EQ(check().exitCode, 0);
    damage();
    const Outcome outcome = check(mReferences);
    EXPECT_EQ(outcome.exitCode, 3);
    EXPECT_TRUE(outcome.out.startsWith(QLatin1String("warning counter.behind (1): ")))
        << outcome.out.toStdString();
    EXPECT_TRUE(outcome.out.contains(QLatin1String("\nerror lane.link-missing (12): ")))
        << outcome.out.toStdString();
    EXPECT_EQ(outcome.out.count(QLatin1String("linkID is 90, and the network has no such link")), 10);
    EXPECT_TRUE(outcome.out.contains(QLatin1String("\n  and 2 more\n")));
    EXPECT_TRUE(outcome.out.endsWith(QLatin1String("\n12 errors, 1 warning, 0 notes\n")))
        << outcome.out.toStdString();
    EXPECT_EQ(outcome.err,
              QStringLiteral("morastore: checked; the store has 12 errors, 1 warning, 0 notes\n"));
}

TEST_F(Check, TheExitCodeFollowsTheSeverityThatIsAskedFor) {
    alter(mStore, {QStringLiteral("update IDGenerater set ID = 12 where TableName = 'Link'")});
    const auto exitCode = [this](const char *failOn) {
        return check(QStringList(mReferences) << QStringLiteral("--fail-on") << QLatin1String(failOn))
            .exitCode;
    };
    EXPECT_EQ(exitCode("error"), 0);
    EXPECT_EQ(exitCode("warning"), 3);
    EXPECT_EQ(exitCode("note"), 3);
    EXPECT_EQ(exitCode("any"), 2);
}

TEST_F(Check, JsonHasAllFindingsAndTheRulesThatFoundNothing) {
    damage();
    const Outcome outcome = check(QStringList(mReferences) << QStringLiteral("--json"));
    const QJsonObject report = QJsonDocument::fromJson(outcome.out.toUtf8()).object();
    EXPECT_EQ(report[QLatin1String("errors")], 12);
    EXPECT_EQ(report[QLatin1String("warnings")], 1);
    EXPECT_FALSE(report.contains(QLatin1String("repaired")));
    int findings = 0;
    int sound = 0;
    for (const QJsonValue &rule : report[QLatin1String("rules")].toArray()) {
        findings += rule[QLatin1String("findings")].toArray().size();
        sound += rule[QLatin1String("count")] == 0 ? 1 : 0;
        if (rule[QLatin1String("rule")] != QLatin1String("lane.link-missing"))
            continue;
        const QJsonObject last = rule[QLatin1String("findings")][11].toObject();
        EXPECT_EQ(last,
                  (QJsonObject{{QStringLiteral("network"), 1},
                               {QStringLiteral("table"), QStringLiteral("Lane")},
                               {QStringLiteral("id"), 12},
                               {QStringLiteral("text"),
                                QStringLiteral("lane 12: linkID is 90, and the network has no such link")}}));
    }
    EXPECT_EQ(findings, 13);
    EXPECT_GT(sound, 50);
}

TEST_F(Check, RulesAreListedAndChosenByIdGroupAndBeginning) {
    const QString list = run({QStringLiteral("check"), QStringLiteral("--list")}).out;
    EXPECT_TRUE(list.contains(QLatin1String("\nreferences error   lane.link-missing  ")))
        << list.toStdString();
    EXPECT_GE(list.count(QLatin1Char('\n')), 100);
    damage();
    const auto errors = [this](const char *rules) {
        return check({QStringLiteral("--rules"), QLatin1String(rules)})
            .out.section(QLatin1String(" error"), 0, 0)
            .section('\n', -1);
    };
    EXPECT_EQ(errors("lane.link-missing"), QStringLiteral("12"));
    EXPECT_EQ(errors("references"), QStringLiteral("12"));
    EXPECT_EQ(errors("link,lane.link-missing,demand"), QStringLiteral("12"));
    EXPECT_EQ(errors("link-vertex"), QStringLiteral("0"));
    expectSentence(check({QStringLiteral("--rules"), QStringLiteral("lane.link")}),
                   QStringLiteral("there is no rule and no group of rules \"lane.link\""));
    EXPECT_EQ(run({QStringLiteral("check")}).exitCode, 2);
}

TEST_F(Check, ItLeavesNoTraceAndNamesTheNetwork) {
    ASSERT_EQ(
        run({QStringLiteral("import"), mStore, kExample, QStringLiteral("--name"), QStringLiteral("second")})
            .exitCode,
        0);
    alter(mStore, {QStringLiteral("update Lane set linkID = 90 where NetId = 2 and serialNumber = 1")});
    const QByteArray before = read(mStore);
    const QStringList files = QDir(mFolder.path()).entryList(QDir::Files);
    const Outcome both = check(mReferences);
    EXPECT_TRUE(both.out.contains(QLatin1String("  network 2: lane "))) << both.out.toStdString();
    EXPECT_FALSE(both.out.contains(QLatin1String("  network 1: ")));
    EXPECT_EQ(check(QStringList(mReferences) << QStringLiteral("--net") << QStringLiteral("1")).exitCode, 0);
    EXPECT_EQ(check(QStringList(mReferences) << QStringLiteral("--net") << QStringLiteral("second")).exitCode,
              3);
    expectSentence(check({QStringLiteral("--net"), QStringLiteral("third")}), QStringLiteral("third"));
    expectSentence(check({QStringLiteral("--picture"), file(QStringLiteral("p.svg"))}),
                   QStringLiteral("choose it with --net"));
    EXPECT_EQ(read(mStore), before);
    EXPECT_EQ(QDir(mFolder.path()).entryList(QDir::Files), files);
}

TEST_F(Check, FixSaysWhatItDidAndChecksWhatIsLeft) {
    damage();
    const Outcome outcome = check(QStringList(mReferences) << QStringLiteral("--fix"));
    EXPECT_TRUE(outcome.out.startsWith(QLatin1String("repaired: the counter of table Link is at 13\n")))
        << outcome.out.toStdString();
    EXPECT_TRUE(outcome.out.contains(QLatin1String(".before-fix-")));
    EXPECT_TRUE(outcome.out.endsWith(QLatin1String("12 errors, 0 warnings, 0 notes\n")));
    EXPECT_EQ(QDir(mFolder.path()).entryList({QStringLiteral("store.mora.before-fix-*")}).size(), 1);
    const QJsonObject again =
        QJsonDocument::fromJson(
            check(QStringList(mReferences) << QStringLiteral("--fix") << QStringLiteral("--json"))
                .out.toUtf8())
            .object();
    EXPECT_EQ(again[QLatin1String("repaired")].toArray().size(), 0);
    EXPECT_EQ(again[QLatin1String("copy")], QString());
}
