#include "tools/checks/CheckRun.h"

#include "tools/checks/Checked.h"
#include "tools/reports/Failure.h"
#include "tools/rows/StoreReader.h"
#include "tools/session/StoreSession.h"

#include <algorithm>
#include <optional>

namespace moratools {

namespace {

/// What a load of a network came to.
struct Loaded {
    std::optional<NetworkObjects> objects;
    QString refusal;
};

Loaded load(const StoreAddress &address, const StoreReader &rows, const StoreReader::Network &net,
            const Progress &progress) {
    Loaded loaded;
    try {
        const StoreSession store(address, Access::Read);
        // A store of one network need not have a record of it.
        loaded.objects = readWhatIsSound(store, rows.hasSeveralNetworks() ? net.id : 0, progress);
    } catch (const Failure &failure) {
        loaded.refusal = failure.message();
    }
    return loaded;
}

/// Whether a rule is called so, is of the group, or begins so.
bool isNamed(const Rule &rule, const QString &name) {
    return rule.id == name || QLatin1String(rule.group) == name ||
           rule.id.startsWith(name.endsWith(QLatin1Char('.')) ? name : name + QLatin1Char('.'));
}

class Run {
public:
    Run(CheckReport &report, const Progress &progress) : mReport(report), mProgress(progress) {}

    /// The rules of a scope, in their order.
    void check(Scope scope, const Checked &checked, double from, double to) {
        int done = 0;
        for (RuleFindings &found : mReport.rules) {
            reportShare(mProgress, from + (to - from) * done++ / double(mReport.rules.size()));
            if (found.rule->scope != scope)
                continue;
            Reporter reporter(found, checked.net().id);
            found.rule->check(checked, reporter);
        }
    }

    bool needs(Scope scope) const {
        return std::any_of(mReport.rules.begin(), mReport.rules.end(),
                           [scope](const RuleFindings &found) { return found.rule->scope == scope; });
    }

private:
    CheckReport &mReport;
    const Progress &mProgress;
};

void checkNetwork(Run &run, const StoreAddress &address, const StoreReader &rows,
                  const StoreReader::Network &net, const Progress &progress, double from, double to) {
    const double loadedAt = from + 0.5 * (to - from);
    Loaded loaded;
    if (run.needs(Scope::Load) || run.needs(Scope::Objects))
        loaded = load(address, rows, net,
                      [&](double share) { reportShare(progress, from + share * (loadedAt - from)); });
    const Checked checked(rows, net, loaded.objects ? &*loaded.objects : nullptr, loaded.refusal);
    run.check(Scope::Rows, checked, loadedAt, 0.5 * (loadedAt + to));
    run.check(Scope::Load, checked, 0.5 * (loadedAt + to), 0.5 * (loadedAt + to));
    if (loaded.objects)
        run.check(Scope::Objects, checked, 0.5 * (loadedAt + to), to);
}

} // namespace

qint64 CheckReport::count(Severity severity) const {
    qint64 count = 0;
    for (const RuleFindings &found : rules)
        count += found.rule->severity == severity ? found.count : 0;
    return count;
}

bool CheckReport::has(Severity atLeast) const {
    return std::any_of(rules.begin(), rules.end(), [atLeast](const RuleFindings &found) {
        return found.count > 0 && found.rule->severity >= atLeast;
    });
}

std::vector<const Rule *> chosenRules(const QStringList &wanted) {
    std::vector<const Rule *> chosen;
    for (const Rule &rule : rules()) {
        const bool isWanted = std::any_of(wanted.begin(), wanted.end(),
                                          [&rule](const QString &name) { return isNamed(rule, name); });
        if (wanted.isEmpty() || isWanted)
            chosen.push_back(&rule);
    }
    for (const QString &name : wanted) {
        if (std::none_of(chosen.begin(), chosen.end(),
                         [&name](const Rule *rule) { return isNamed(*rule, name); }))
            throw Failure(QStringLiteral("there is no rule and no group of rules \"%1\"; \"morastore check "
                                         "--list\" lists them")
                              .arg(name));
    }
    return chosen;
}

CheckReport checkStore(const StoreAddress &address, const CheckOptions &options, const Progress &progress) {
    CheckReport report;
    for (const Rule *rule : chosenRules(options.rules))
        report.rules.push_back({rule, 0, {}});
    const StoreReader rows(address);
    // A store without networks can be sound.
    if (!options.networks.empty() || !isEmpty(rows))
        report.networks = rows.networksOf(options.networks);
    Run run(report, progress);
    constexpr double storeIsChecked = 0.1;
    run.check(Scope::Store, Checked(rows), 0, storeIsChecked);
    const double part = (1 - storeIsChecked) / std::max(1, report.networks.size());
    double from = storeIsChecked;
    for (const NamedNetwork &net : qAsConst(report.networks)) {
        checkNetwork(run, address, rows, net, progress, from, from + part);
        from += part;
    }
    return report;
}

} // namespace moratools
