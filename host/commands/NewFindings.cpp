#include "host/commands/NewFindings.h"

#include "host/Printable.h"
#include "host/ProgressBar.h"
#include "host/commands/Commands.h"
#include "tools/checks/CheckRun.h"

#include <functional>

using namespace moratools;

namespace commands {

namespace {

constexpr int kShown = 20;

void check(const StoreAddress &store, const std::string &net,
           const std::function<void(const Rule &, const Finding &)> &use) {
    CheckOptions options;
    if (!net.empty())
        options.networks = {net};
    ProgressBar checking(QStringLiteral("checking"));
    const CheckReport report = checkStore(store, options, checking.hearer());
    const long network = report.networks.isEmpty() ? 0 : report.networks.first().id;
    for (const RuleFindings &found : report.rules) {
        for (const Finding &finding : found.findings) {
            if (found.rule->severity != Severity::Note && finding.network == network)
                use(*found.rule, finding);
        }
    }
}

/// The same rule about the same object, which may have another name by now.
QString keyOf(const Rule &rule, const Finding &finding) {
    const QString about =
        finding.id ? finding.table + QLatin1Char(' ') + QString::number(*finding.id) : finding.text;
    return rule.id + QLatin1Char(' ') + about;
}

} // namespace

void NewFindings::checkBefore(const StoreAddress &store, const std::string &net) {
    check(store, net,
          [this](const Rule &rule, const Finding &finding) { mKnown.insert(keyOf(rule, finding)); });
}

void NewFindings::tellAfter(const StoreAddress &store, const std::string &net) const try {
    int count = 0;
    check(store, net, [&](const Rule &rule, const Finding &finding) {
        if (mKnown.contains(keyOf(rule, finding)) || ++count > kShown)
            return;
        tell(QStringLiteral("new %1 %2: %3")
                 .arg(wordFor(rule.severity), rule.id, printable::line(finding.text)));
    });
    if (count > kShown)
        tell(QStringLiteral("and %1 more; \"morastore check\" tells all").arg(count - kShown));
} catch (const Failure &failure) {
    // What was to be done is done.
    tell(QStringLiteral("not checked: %1").arg(failure.message()));
}

} // namespace commands
