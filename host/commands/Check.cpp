#include "host/Printable.h"
#include "host/ProgressBar.h"
#include "host/commands/Commands.h"
#include "host/commands/OpenedStore.h"
#include "tools/checks/CheckRun.h"
#include "tools/checks/Repair.h"
#include "tools/drawing/NetworkDrawing.h"
#include "tools/kinds/NetworkObjects.h"
#include "tools/rows/StoreReader.h"

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
    std::string picture;
    bool list = false;
    bool json = false;
    bool fix = false;
    bool noBackup = false;
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

QString textOf(const Repairs &repairs) {
    QString text;
    for (const QString &line : repairs.done)
        text += QStringLiteral("repaired: %1\n").arg(printable::line(line));
    if (!repairs.copy.isEmpty())
        text += QStringLiteral("%1 keeps what the store was\n\n").arg(printable::line(repairs.copy));
    return text;
}

QJsonObject jsonOf(const CheckReport &report, bool isFixed, const Repairs &repairs) {
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
    QJsonObject object{{QStringLiteral("errors"), report.count(Severity::Error)},
                       {QStringLiteral("warnings"), report.count(Severity::Warning)},
                       {QStringLiteral("notes"), report.count(Severity::Note)},
                       {QStringLiteral("rules"), rules}};
    if (isFixed) {
        object.insert(QStringLiteral("repaired"), QJsonArray::fromStringList(repairs.done));
        object.insert(QStringLiteral("copy"), repairs.copy);
    }
    return object;
}

QString listOfRules() {
    QString text;
    for (const Rule &rule : rules())
        text += QStringLiteral("%1 %2 %3  %4\n")
                    .arg(QString::fromLatin1(rule.group).leftJustified(10),
                         wordFor(rule.severity).leftJustified(7), rule.id, rule.meaning);
    return text;
}

QColor colourOf(Severity severity) {
    switch (severity) {
    case Severity::Note:
        return QColor(0x2a, 0x6f, 0xdb);
    case Severity::Warning:
        return QColor(0xe0, 0x8a, 0x00);
    default:
        return QColor(0xd0, 0x10, 0x20);
    }
}

/// Draws a network with the findings, the worst on top. Returns what the picture lacks.
QStringList draw(const Options &options, const CheckReport &report) {
    std::vector<Marks> marks;
    qint64 nowhere = 0;
    for (const Severity severity : {Severity::Note, Severity::Warning, Severity::Error}) {
        Marks group{wordFor(severity), colourOf(severity), {}, {}};
        for (const RuleFindings &found : report.rules) {
            if (found.rule->severity != severity)
                continue;
            for (const Finding &finding : found.findings) {
                if (finding.place)
                    group.places.push_back(*finding.place);
            }
            nowhere += found.count;
        }
        nowhere -= qint64(group.places.size());
        marks.push_back(std::move(group));
    }
    const OpenedStore store(QString::fromStdString(options.store), Access::Read);
    const long net = store.hasSeveralNetworks() ? report.networks.first().id : 0;
    QStringList leftOut =
        drawToFile(readWhatIsSound(store, net), QString::fromStdString(options.picture), kPictureSize, marks);
    if (nowhere > 0)
        leftOut.append(QStringLiteral("findings without a place: %1").arg(nowhere));
    return leftOut;
}

CheckReport run(const Options &options) {
    CheckOptions chosen;
    chosen.networks = options.nets;
    for (const std::string &rule : options.rules)
        chosen.rules.append(QString::fromStdString(rule));
    ProgressBar checking(QStringLiteral("checking"));
    return checkStore(QString::fromStdString(options.store), chosen, checking.hearer());
}

/// Before anything is done: what would be found out too late.
void requireSense(const Options &options) {
    chosenRules([&options] {
        QStringList names;
        for (const std::string &rule : options.rules)
            names.append(QString::fromStdString(rule));
        return names;
    }());
    if (options.picture.empty())
        return;
    requirePicturePath(QString::fromStdString(options.picture));
    const StoreReader rows(QString::fromStdString(options.store));
    if (rows.networksOf(options.nets).size() != 1)
        throw Failure(QStringLiteral("a picture shows one network; choose it with --net"));
}

void check(const Options &options) {
    if (options.list) {
        print(listOfRules());
        return;
    }
    requireSense(options);
    Repairs repairs;
    if (options.fix)
        repairs = repairStore(QString::fromStdString(options.store), options.nets, !options.noBackup);
    const QString done = repairs.done.isEmpty() ? QString() : QStringLiteral("the store is repaired");
    const CheckReport report = run(options);
    if (options.json)
        printJson(QJsonDocument(jsonOf(report, options.fix, repairs)), done);
    else
        print(textOf(repairs) + textOf(report), done);
    if (!options.picture.empty() && !report.networks.isEmpty()) {
        for (const QString &line : draw(options, report))
            tell(QStringLiteral("not in the picture: ") + line);
    }
    if (report.has(options.failOn))
        throw Incomplete(QStringLiteral("checked; the store has %1").arg(summary(report)));
}

} // namespace

void addCheck(CLI::App &program, Run &run) {
    const auto options = std::make_shared<Options>();
    CLI::App *command =
        program.add_subcommand("check", "Say whether networks are sound: what is wrong, by named rules.");
    command->add_option("STORE", options->store, kStoreHelp);
    command
        ->add_option("--net", options->nets,
                     "Number or name of a network; a number goes first; may be repeated; default: all")
        ->type_name("NET")
        ->allow_extra_args(false);
    command
        ->add_option("--rules", options->rules,
                     "Rules by id, group, or what their ids begin with, separated by commas; default: all")
        ->type_name("LIST")
        ->delimiter(',')
        ->allow_extra_args(false);
    command->add_flag("--list", options->list, "List the rules, with group, severity and meaning");
    const std::map<std::string, Severity> severities{
        {"note", Severity::Note}, {"warning", Severity::Warning}, {"error", Severity::Error}};
    command
        ->add_option("--fail-on", options->failOn,
                     "Exit code 3 from findings of that severity on: note, warning or error (default)")
        ->transform(CLI::CheckedTransformer(severities))
        ->type_name("SEVERITY");
    command->add_flag("--json", options->json, "As one JSON object, with all findings; places in metres");
    command
        ->add_option("--picture", options->picture,
                     "Draw the network with a mark for each finding: .svg or .png")
        ->type_name("FILE");
    CLI::Option *fix = command->add_flag(
        "--fix", options->fix,
        "Repair first what cannot be repaired wrongly: counters, rows that belong to nothing, repeated points, shares off by "
        "rounding. A checked copy of what the store was is kept beside it as STORE.before-fix-DATE-TIME");
    command->add_flag("--no-backup", options->noBackup, "Keep no copy")->needs(fix);
    command->callback([options, &run] {
        if (options->store.empty() && !options->list)
            throw CLI::RequiredError("STORE");
        run.paints = !options->picture.empty();
        run.work = [options] { check(*options); };
    });
}

} // namespace commands
