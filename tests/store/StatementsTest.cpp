#include "tests/support/Golden.h"
#include "tests/support/StatementList.h"
#include "tests/support/StatementTrace.h"
#include "tests/support/StoreFixture.h"

// What every operation executes, as the engine itself reports it, against a list per generation in
// tests/golden. Where the difference is meant, write the lists anew and read what has changed in them:
//     MORASTORE_WRITE_GOLDEN=1 build/dev/bin/morastore_tests --gtest_filter='*StatementsTest*'

namespace {

/// In a form that a failed comparison prints readably.
std::string text(const QStringList &lines) {
    return lines.join(QLatin1Char('\n')).toStdString();
}

class StatementsTest : public StoreKindFixture {
protected:
    QString goldenName() const {
        return hasSeveralNets() ? QStringLiteral("statements_several_nets.txt")
                                : QStringLiteral("statements_one_net.txt");
    }

    /// The sections of a recorder on a new store.
    QList<StatementList::Section> record(StatementFamily::Recorder recorder) {
        openTemplate(GetParam().templateName);
        StatementList list;
        recorder(list);
        return list.sections();
    }

    /// The operations of DBTools_V6 must execute what their namesakes do, but for the question for the
    /// version; those that are named with their class are appended to @p sections.
    void recordTwins(StatementFamily::Recorder recorder, QList<StatementList::Section> &sections) {
        QHash<QString, QStringList> namesakes;
        for (StatementList::Section &section : sections) {
            QStringList lines = section.lines;
            lines.removeAll(QStringLiteral("select * from DbVersion"));
            namesakes.insert(section.name, lines);
        }
        for (const StatementList::Section &section : record(recorder)) {
            if (section.name.startsWith(QLatin1String("DBTools_V6::")))
                sections.append(section);
            else
                EXPECT_EQ(text(section.lines), text(namesakes.value(section.name))) << text({section.name});
        }
    }

    QStringList recordAll() {
        QStringList lines;
        const QList<StatementFamily> families = StatementFamily::all();
        for (const StatementFamily &family : families) {
            QList<StatementList::Section> sections = record(family.dbTools);
            if (hasSeveralNets())
                recordTwins(family.dbToolsV6, sections);
            lines.append(QStringLiteral("# ") + QLatin1String(family.name));
            for (const StatementList::Section &section : qAsConst(sections)) {
                lines.append(QStringLiteral("== ") + section.name);
                lines.append(section.lines);
            }
        }
        return lines;
    }
};

QString sectionOf(const QStringList &lines, int line) {
    while (line > 0 && !lines.value(line).startsWith(QLatin1String("== ")))
        --line;
    return lines.value(line);
}

TEST_P(StatementsTest, EveryOperationExecutesWhatTheListSays) {
    if (!StatementTrace::canTrace(gDB))
        GTEST_SKIP() << "Qt's SQLite driver has an engine of its own";
    const QStringList executed = recordAll();
    if (writesGolden(goldenName(), executed))
        GTEST_SKIP() << "written: " << qPrintable(goldenName());
    const QStringList listed = readGolden(goldenName());
    for (int i = 0; i < qMax(executed.size(), listed.size()); ++i) {
        ASSERT_EQ(text({executed.value(i)}), text({listed.value(i)}))
            << qPrintable(sectionOf(listed, i)) << ", line " << i + 1 << " of " << qPrintable(goldenName());
    }
}

INSTANTIATE_TEST_SUITE_P(Stores, StatementsTest, testing::ValuesIn(kFileKinds), storeKindName);

} // namespace
