#pragma once

#include "tools/MoraToolsExport.h"
#include "tools/checks/Finding.h"
#include "tools/reports/Progress.h"
#include "tools/session/NetworkChoice.h"
#include "tools/session/StoreAddress.h"

#include <QStringList>

#include <string>
#include <vector>

namespace moratools {

struct CheckOptions {
    std::vector<std::string> networks; ///< by number or name; without any all of the store
    /// Rules by id, by group, or by how their ids begin up to a dot ("signal-lamp"); without any all.
    QStringList rules;
};

/// What a check found.
struct MORATOOLS_EXPORT CheckReport {
    QList<NamedNetwork> networks;
    std::vector<RuleFindings> rules; ///< those that ran, in the order of rules()

    qint64 count(Severity severity) const;
    /// Whether there is a finding of that severity or a worse one.
    bool has(Severity atLeast) const;
};

/// The rules that `wanted` names (CheckOptions::rules). Throws `Failure` for a name that is of none.
MORATOOLS_EXPORT std::vector<const Rule *> chosenRules(const QStringList &wanted);

/// Checks networks of a store of any generation, on either engine, and leaves no trace there. A network that
/// cannot be loaded is a finding (network.not-readable), and its rows are checked nevertheless. Throws
/// `Failure` where there is no store, none of its networks is meant, or its rows cannot be read.
MORATOOLS_EXPORT CheckReport checkStore(const StoreAddress &address, const CheckOptions &options,
                                        const Progress &progress = {});

} // namespace moratools
