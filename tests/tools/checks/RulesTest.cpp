#include "tests/support/Manual.h"
#include "tests/tools/checks/Examples.h"
#include "tests/tools/checks/SoundStore.h"

#include "tools/session/NewStore.h"

#include <QSet>

using namespace moratools;

namespace {

/// The rules to be run for an example. What a row that is wrong does to objects is the affair of rules on objects.
QStringList rulesFor(const Example &example) {
    QStringList chosen;
    const Rule *own = ruleCalled(QLatin1String(example.rule));
    const auto isOfLoad = [](const Rule &rule) {
        return rule.scope == Scope::Objects || rule.scope == Scope::Load;
    };
    const bool isOfStore = own->group == std::string("store");
    for (const Rule &rule : rules()) {
        if (!isOfLoad(rule) || &rule == own || (isOfLoad(*own) && !isOfStore))
            chosen.append(rule.id);
    }
    return chosen;
}

struct Group {
    const char *name;
    std::vector<Example> (*examples)();
};

const std::vector<Group> kGroups{
    {"store", storeExamples},    {"references", referenceExamples}, {"json", jsonExamples},
    {"signals", signalExamples}, {"geometry", geometryExamples},    {"topology", topologyExamples},
    {"demand", demandExamples},  {"transit", transitExamples},      {"devices", deviceExamples},
};

void PrintTo(const Group &group, std::ostream *out) {
    *out << group.name;
}

class RuleExamples : public SoundStore, public testing::WithParamInterface<Group> {
protected:
    QString badStore(const Example &example) {
        if (!example.older)
            return storeAfter(example.bad);
        const QString store = file(QStringLiteral("older.db"));
        makeStore(store, QLatin1String(example.older));
        return store;
    }

    /// The rules that have more to say of a store than of the sound one, with a blank after each.
    std::string risen(const QString &store, const Example &example) {
        QString more;
        if (mBefore.isEmpty())
            mBefore = findings(mSound);
        const QMap<QString, int> after = findings(store, rulesFor(example));
        for (auto rule = after.cbegin(); rule != after.cend(); ++rule) {
            if (rule.value() > mBefore.value(rule.key()))
                more += rule.key() + QLatin1Char(' ');
        }
        return more.toStdString();
    }

private:
    QMap<QString, int> mBefore; ///< what is found in the sound store
};

/// The rules as the manual has them.
QString asMarkdown() {
    QString text;
    QString group;
    for (const Rule &rule : rules()) {
        if (group != QLatin1String(rule.group))
            text +=
                QStringLiteral(
                    "\n### %1\n\n| rule | | what a finding means | what to do |\n| --- | --- | --- | --- |\n")
                    .arg(QLatin1String(rule.group));
        group = QLatin1String(rule.group);
        text += QStringLiteral("| `%1` | %2 | %3 | %4 |\n")
                    .arg(rule.id, wordFor(rule.severity), rule.meaning, rule.remedy);
    }
    return text;
}

class CheckedStore : public SoundStore {};

} // namespace

TEST(Rules, EachHasAnExampleAndAnIdOfItsOwn) {
    QSet<QString> ids;
    QStringList inGroups;
    for (const Rule &rule : rules()) {
        EXPECT_FALSE(ids.contains(rule.id)) << rule.id.toStdString();
        ids.insert(rule.id);
        EXPECT_TRUE(rule.meaning.endsWith('.') && rule.remedy.endsWith('.')) << rule.id.toStdString();
        inGroups.append(QLatin1String(rule.group) + QLatin1Char(' ') + rule.id);
    }
    QStringList withExamples;
    for (const Group &group : kGroups) {
        for (const Example &example : group.examples())
            withExamples.append(QLatin1String(group.name) + QLatin1Char(' ') + QLatin1String(example.rule));
    }
    for (const QString &rule : inGroups)
        EXPECT_EQ(withExamples.count(rule), 1) << rule.toStdString();
    EXPECT_EQ(withExamples.size(), inGroups.size());
}

TEST(Rules, TheManualHasThem) {
    expectGenerated("checks.md", "\n### store\n", asMarkdown());
}

TEST_F(CheckedStore, ASoundNetworkHasOnlyNotes) {
    for (const RuleFindings &found : checkStore(mSound, {}).rules) {
        if (found.rule->severity != Severity::Note && found.count > 0)
            ADD_FAILURE() << found.rule->id.toStdString() << ": "
                          << found.findings.first().text.toStdString();
    }
}

TEST_P(RuleExamples, TheBadOneIsFoundAndTheGoodOneIsNot) {
    for (const Example &example : GetParam().examples()) {
        SCOPED_TRACE(example.rule);
        QStringList expected = QStringList(example.also) << QLatin1String(example.rule);
        expected.sort();
        EXPECT_EQ(risen(badStore(example), example), expected.join(QLatin1Char(' ')).toStdString() + ' ');
        const std::string rest = ' ' + risen(storeAfter(example.good), example);
        EXPECT_EQ(rest.find(' ' + std::string(example.rule) + ' '), std::string::npos) << rest;
    }
}

INSTANTIATE_TEST_SUITE_P(Groups, RuleExamples, testing::ValuesIn(kGroups),
                         [](const auto &group) { return std::string(group.param.name); });
