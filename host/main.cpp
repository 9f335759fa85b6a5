#include "host/Host.h"
#include "host/commands/Commands.h"
#include "host/commands/OpenedStore.h"
#include "tools/reports/Failure.h"
#include "tools/session/Patience.h"
#include "tools/session/TemporaryFolder.h"

#include <QFile>
#include <QGuiApplication>

#include <cstdio>
#include <memory>
#include <sstream>

using namespace moratools;

namespace {

enum ExitCode { Done = 0, Failed = 1, WrongUsage = 2, LeftOut = 3, Unwritten = 4 };

constexpr const char *kFooter =
    "Exit codes:\n"
    "  0  done\n"
    "  1  the operation failed; the reason is on stderr, and the store is as it was\n"
    "  2  the command line is wrong\n"
    "  3  done, but something was left out (see stderr), or the store refused some statements\n"
    "     (--verbose shows them), or a check found something\n"
    "  4  done, but the output cannot be written; stderr says what happened to the store\n"
    "\n"
    "Data go to stdout, messages and progress to stderr. Control characters in names are written out\n"
    "(\\n, \\x1b); --json gives every text as it is.";

QString sentenceFor(const CLI::App &program, const CLI::ParseError &error) {
    const std::vector<std::string> rest = program.remaining();
    if (dynamic_cast<const CLI::RequiredError *>(&error) && program.get_subcommands().empty())
        return rest.empty() ? QStringLiteral("give a command; \"morastore --help\" lists them")
                            : QStringLiteral("there is no command \"%1\"; \"morastore --help\" lists them")
                                  .arg(QString::fromStdString(rest.front()));
    return QStringLiteral("%1; --help says what a command takes").arg(QString::fromUtf8(error.what()));
}

/// Parses the command line; false when there is nothing to run: then help was asked for and is printed.
/// Throws CLI::ParseError.
bool parse(CLI::App &program) {
    std::vector<std::string> arguments;
    const QStringList given = QCoreApplication::arguments().mid(1);
    for (auto argument = given.rbegin(); argument != given.rend(); ++argument)
        arguments.push_back(argument->toStdString());
    try {
        program.parse(arguments);
        return true;
    } catch (const CLI::Success &help) {
        std::ostringstream text;
        program.exit(help, text, text);
        commands::print(QString::fromStdString(text.str()));
        return false;
    }
}

int execute(const std::function<void()> &work) {
    try {
        work();
    } catch (const commands::OutputLost &lost) {
        if (!lost.message().isEmpty())
            commands::tell(QStringLiteral("morastore: %1").arg(lost.message()));
        return Unwritten;
    } catch (const commands::Incomplete &incomplete) {
        commands::tell(QStringLiteral("morastore: %1").arg(incomplete.message()));
        return LeftOut;
    } catch (const Failure &failure) {
        commands::tell(QStringLiteral("morastore: %1").arg(failure.message()));
        return Failed;
    } catch (const std::bad_alloc &) {
        commands::tell(
            QStringLiteral("morastore: out of memory; close other programs or use a smaller network"));
        return Failed;
    }
    if (commands::refusedStatements() == 0)
        return Done;
    commands::tell(QStringLiteral("morastore: the store refused %1 statements; --verbose shows them")
                       .arg(commands::refusedStatements()));
    return LeftOut;
}

/// What holds for every command.
struct Options {
    std::string language;
    bool verbose = false;
    int wait = 30; ///< seconds
};

void addOptions(CLI::App &program, Options &options) {
    program
        .add_option("--lang", options.language,
                    "Language of the host's words: zh, or another; default: the locale's")
        ->type_name("LANG");
    program.add_flag("--verbose", options.verbose, "Show the statements that a store refused");
    program
        .add_option(
            "--wait", options.wait,
            "How long a command that writes waits for another program that holds the store; default: 30")
        ->type_name("SECONDS")
        ->check(CLI::Range(0, 86400));
}

/// A wait is told once.
void setPatience(int seconds) {
    patience::set(seconds, [seconds, isTold = false]() mutable {
        if (!isTold)
            commands::tell(
                QStringLiteral("another program holds the store; waiting, for up to %1 s").arg(seconds));
        isTold = true;
    });
}

} // namespace

int main(int argc, char **argv) try {
    host::prepareProcess();
    auto application = std::make_unique<QCoreApplication>(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("morastore"));

    CLI::App program("morastore: stores of road networks for traffic simulation", "morastore");
    program.footer(kFooter);
    program.set_version_flag("--version", commands::versionText());
    program.require_subcommand(1);
    program.fallthrough();
    Options options;
    addOptions(program, options);
    commands::Run run;
    commands::addNew(program, run);
    commands::addImport(program, run);
    commands::addExport(program, run);
    commands::addInfo(program, run);
    commands::addShow(program, run);
    commands::addDraw(program, run);
    commands::addCopy(program, run);
    commands::addDigest(program, run);
    commands::addDiff(program, run);
    commands::addApply(program, run);
    commands::addInvert(program, run);
    commands::addMerge(program, run);
    commands::addRoundTrip(program, run);
    commands::addUpdate(program, run);
    commands::addUpgrade(program, run);
    commands::addCompact(program, run);
    commands::addPlace(program, run);
    commands::addRemove(program, run);
    commands::addProtect(program, run);
    commands::addUnprotect(program, run);
    commands::addChanges(program, run);
    commands::addCheck(program, run);

    bool isChosen = false;
    try {
        const int exitCode = execute([&] { isChosen = parse(program); });
        if (!isChosen)
            return exitCode;
    } catch (const CLI::ParseError &error) {
        commands::tell(QStringLiteral("morastore: %1").arg(sentenceFor(program, error)));
        return WrongUsage;
    }
    setPatience(options.wait);
    TemporaryFolder::removeAbandoned();
    std::unique_ptr<TemporaryFolder> runtimeFolder;
    if (run.paints) {
        // Only fonts need one, and it takes its time.
        application.reset();
#ifdef Q_OS_UNIX
        // Where there is no session, its folder would be made and stay.
        if (!qEnvironmentVariableIsSet("XDG_RUNTIME_DIR")) {
            runtimeFolder = std::make_unique<TemporaryFolder>();
            qputenv("XDG_RUNTIME_DIR", QFile::encodeName(runtimeFolder->path()));
        }
#endif
        application = std::make_unique<QGuiApplication>(argc, argv);
    }
    const host::Session session(QString::fromStdString(options.language), options.verbose);
    return execute(run.work);
} catch (const std::exception &error) {
    commands::tell(QStringLiteral("morastore: %1").arg(QString::fromUtf8(error.what())));
    return Failed;
}
