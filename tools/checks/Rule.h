#pragma once

#include "tools/MoraToolsExport.h"

#include <QString>

#include <functional>
#include <vector>

namespace moratools {

class Checked;
class Reporter;

/// How bad a finding is.
enum class Severity {
    Note,    ///< worth knowing; networks that are in use have it
    Warning, ///< most likely not what was meant
    Error    ///< a program that reads the store goes wrong
};

/// "note", "warning" or "error".
MORATOOLS_EXPORT QString wordFor(Severity severity);

/// What a rule looks at, and with that how often it runs.
enum class Scope {
    Store,  ///< the store as a whole, once
    Rows,   ///< the rows of a network
    Load,   ///< whether a network can be loaded
    Objects ///< the objects of a network that was loaded as a whole
};

/// Something that must hold of a sound network.
struct Rule {
    QString id; ///< what it is about, and what is wrong with it: "lane.width-not-positive"
    /// store, references, json, geometry, topology, signals, demand, transit or devices.
    const char *group = nullptr;
    Severity severity = Severity::Note;
    Scope scope = Scope::Objects;
    QString meaning; ///< what a finding means, one sentence
    QString remedy;  ///< what to do about it, one sentence
    /// Tells the reporter what it finds. Throws `Failure` when the store cannot be read.
    std::function<void(const Checked &checked, Reporter &reporter)> check;
};

/// All rules, by group, in the order in which findings are reported.
MORATOOLS_EXPORT const std::vector<Rule> &rules();

/// The rule of that id; null without one.
MORATOOLS_EXPORT const Rule *ruleCalled(const QString &id);

} // namespace moratools
