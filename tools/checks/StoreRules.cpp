#include "tools/checks/Checked.h"
#include "tools/checks/Finding.h"
#include "tools/checks/RuleGroups.h"

#include <QSqlQuery>
#include <QVariant>

namespace moratools {

namespace {

void checkIntegrity(const Checked &checked, Reporter &reporter) {
    if (!checked.rows().isSqlite())
        return;
    QSqlQuery lines = checked.rows().run(QStringLiteral("pragma integrity_check"));
    while (lines.next()) {
        const QString line = lines.value(0).toString().simplified();
        if (line != QLatin1String("ok"))
            reporter.find(line);
    }
    checked.rows().check(lines);
}

void checkReadable(const Checked &checked, Reporter &reporter) {
    if (!checked.refusal().isEmpty())
        reporter.find(checked.refusal());
}

} // namespace

std::vector<Rule> storeRules() {
    return {
        {QStringLiteral("store.damaged"), "store", Severity::Error, Scope::Store,
         QStringLiteral("The engine finds its own pages or indexes damaged."),
         QStringLiteral(
             "Restore the store from a copy; a copy of its networks into a new store saves what can "
             "still be read."),
         checkIntegrity},
        {QStringLiteral("network.not-readable"), "store", Severity::Error, Scope::Rows,
         QStringLiteral("The network cannot be loaded."),
         QStringLiteral("Mend what the other findings name, or restore the store from a copy."),
         checkReadable},
    };
}

} // namespace moratools
