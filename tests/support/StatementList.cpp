#include "tests/support/StatementList.h"

#include "tests/support/StatementTrace.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

QStringList execute(const std::function<void()> &call) {
    DBTools::mlCallDbResult.clear();
    DBTools_V6::mlCallDbResult.clear();
    QStringList lines;
    {
        const StatementTrace trace(gDB);
        call();
        lines = trace.statements();
    }
    for (const CallDbResult &failure : DBTools::mlCallDbResult + DBTools_V6::mlCallDbResult)
        lines.append(QStringLiteral("refused: ") + failure.sql);
    return lines;
}

/// Without the transaction, and without the checks of the connection that go with it.
std::string withoutFrame(QStringList lines) {
    for (const char *frame : {"BEGIN", "COMMIT", "ROLLBACK", "select count(*) from IDGenerater"})
        lines.removeAll(QLatin1String(frame));
    return lines.join(QLatin1Char('\n')).toStdString();
}

QList<StatementFamily> &families() {
    static QList<StatementFamily> list;
    return list;
}

} // namespace

void StatementList::add(const QString &operation, const std::function<void()> &call) {
    mSections.append({operation, execute(call)});
}

void StatementList::addWrite(const QString &operation, const std::function<void(bool)> &call) {
    ASSERT_TRUE(gDB.transaction());
    const QStringList trial = execute([&] { call(false); });
    ASSERT_TRUE(gDB.rollback());
    add(operation, [&] { call(true); });
    const QStringList &lines = mSections.last().lines;
    EXPECT_FALSE(trial.contains(QStringLiteral("COMMIT")) || trial.contains(QStringLiteral("ROLLBACK")))
        << qPrintable(operation);
    EXPECT_EQ(withoutFrame(trial), withoutFrame(lines)) << qPrintable(operation);
}

StatementFamily::StatementFamily(const char *familyName, Recorder recorder, Recorder recorderV6)
    : name(familyName), dbTools(recorder), dbToolsV6(recorderV6) {
    families().append(*this);
}

QList<StatementFamily> StatementFamily::all() {
    QList<StatementFamily> sorted = families();
    std::sort(sorted.begin(), sorted.end(),
              [](const StatementFamily &a, const StatementFamily &b) { return qstrcmp(a.name, b.name) < 0; });
    return sorted;
}
