#include "host/Printable.h"
#include "host/ProgressBar.h"
#include "host/commands/Commands.h"
#include "tools/checks/CheckRun.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

using namespace moratools;

namespace commands {

namespace {

constexpr int kShownOfRule = 10;

struct Options {
    std::string store;
    std::vector<std::string> nets;
    std::vector<std::string> rules;
    Severity failOn = Severity::Error;
    bool json = false;
};

QString counted(qint64 count, const char *what) {
    return QStringLiteral("%1 %2%3").arg(QString::number(count), QLatin1String(what),
                                         count == 1 ? QString() : QStringLiteral("s"));
}

QString summary(const CheckReport &report) {
    return QStringLiteral("%1, %2, %3")
        .arg(counted(report.count(Severity::Error), "error"),
             counted(report.count(Severity::Warning), "warning"),
             counted(report.count(Severity::Note), "note"));
}

QString textOf(const CheckReport &report) {
    QString text;
    for (const RuleFindings &found : report.rules) {
        if (found.count == 0)
            continue;
        text += QStringLiteral("%1 %2 (%3): %4\n")
                    .arg(wordFor(found.rule->severity), found.rule->id, QString::number(found.count),
                         found.rule->meaning);
        for (const Finding &finding : found.findings.mid(0, kShownOfRule)) {
            const QString network = report.networks.size() > 1 && finding.network != 0
                                        ? QStringLiteral("network %1: ").arg(finding.network)
                                        : QString();
            text += QStringLiteral("  %1%2\n").arg(network, printable::line(finding.text));
        }
        if (found.count > kShownOfRule)
            text += QStringLiteral("  and %1 more\n").arg(found.count - kShownOfRule);
        text += QStringLiteral("  %1\n\n").arg(found.rule->remedy);
    }
    return text + summary(report) + QLatin1Char('\n');
}

QJsonObject jsonOf(const Finding &finding) {
    QJsonObject object;
    if (finding.network != 0)
        object.insert(QStringLiteral("network"), qint64(finding.network));
    if (!finding.table.isEmpty())
        object.insert(QStringLiteral("table"), finding.table);
    if (finding.id)
        object.insert(QStringLiteral("id"), *finding.id);
    object.insert(QStringLiteral("text"), finding.text);
    if (finding.place) {
        object.insert(QStringLiteral("x"), finding.place->x());
        object.insert(QStringLiteral("y"), finding.place->y());
    }
    return object;
}

QJsonObject jsonOf(const CheckReport &report) {
    QJsonArray rules;
    for (const RuleFindings &found : report.rules) {
        QJsonArray findings;
        for (const Finding &finding : found.findings)
            findings.append(jsonOf(finding));
        rules.append(QJsonObject{{QStringLiteral("rule"), found.rule->id},
                                 {QStringLiteral("group"), QLatin1String(found.rule->group)},
                                 {QStringLiteral("severity"), wordFor(found.rule->severity)},
                                 {QStringLiteral("count"), found.count},
                                 {QStringLiteral("findings"), findings}});
    }
    return {{QStringLiteral("errors"), report.count(Severity::Error)},
            {QStringLiteral("warnings"), report.count(Severity::Warning)},
            {QStringLiteral("notes"), report.count(Severity::Note)},
            {QStringLiteral("rules"), rules}};
}

void check(const Options &options) {
    CheckOptions chosen;
    chosen.networks = options.nets;
    for (const std::string &rule : options.rules)
        chosen.rules.append(QString::fromStdString(rule));
    CheckReport report;
    {
        ProgressBar checking(QStringLiteral("checking"));
        report = checkStore(QString::fromStdString(options.store), chosen, checking.hearer());
    }
    if (options.json)
        printJson(QJsonDocument(jsonOf(report)));
    else
        print(textOf(report));
    if (report.has(options.failOn))
        throw Incomplete(QStringLiteral("checked; the store has %1").arg(summary(report)));
}

} // namespace

void addCheck(CLI::App &program, Run &run) {
    const auto options = std::make_shared<Options>();
    CLI::App *command =
        program.add_subcommand("check", "Say whether networks are sound: what is wrong, by named rules.");
    command->add_option("STORE", options->store, kStoreHelp)->required();
    command
        ->add_option("--net", options->nets,
                     "Number or name of a network; a number goes first; may be repeated; default: all")
        ->type_name("NET")
        ->allow_extra_args(false);
    command
        ->add_option("--rules", options->rules,
                     "Rules by id, group, or beginning of their ids, separated by commas; default: all")
        ->type_name("LIST")
        ->delimiter(',')
        ->allow_extra_args(false);
    const std::map<std::string, Severity> severities{
        {"note", Severity::Note}, {"warning", Severity::Warning}, {"error", Severity::Error}};
    command
        ->add_option("--fail-on", options->failOn,
                     "Exit code 3 from findings of that severity on: note, warning or error")
        ->transform(CLI::CheckedTransformer(severities))
        ->type_name("SEVERITY")
        ->default_str("error");
    command->add_flag("--json", options->json, "As one JSON object, with all findings; places in metres");
    command->callback([options, &run] { run.work = [options] { check(*options); }; });
}

} // namespace commands
