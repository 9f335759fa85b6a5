#include "host/Failure.h"
#include "host/Host.h"
#include "host/commands/Commands.h"
#include "host/store/OpenStore.h"

#include <QGuiApplication>

#include <cstdio>

namespace {

enum ExitCode { Done = 0, Failed = 1, WrongUsage = 2, LeftOut = 3 };

constexpr const char *kFooter =
    "Exit codes:\n"
    "  0  done\n"
    "  1  the operation failed; the reason is on stderr, and the store is as it was\n"
    "  2  the command line is wrong\n"
    "  3  done, but something was left out (see stderr), or the store refused some statements\n"
    "     (--verbose shows them)\n"
    "\n"
    "Data go to stdout, messages and progress to stderr.";

/// Parses the command line; false when there is nothing to run, with `exitCode` saying why.
bool parse(CLI::App &program, int &exitCode) {
    std::vector<std::string> arguments;
    const QStringList given = QCoreApplication::arguments().mid(1);
    for (auto argument = given.rbegin(); argument != given.rend(); ++argument)
        arguments.push_back(argument->toStdString());
    try {
        program.parse(arguments);
        return true;
    } catch (const CLI::ParseError &error) {
        exitCode = program.exit(error) == 0 ? Done : WrongUsage;
        return false;
    }
}

int execute(const commands::Run &run) {
    try {
        run();
    } catch (const Incomplete &incomplete) {
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
    if (unexpectedFailures() == 0)
        return Done;
    commands::tell(QStringLiteral("morastore: the store refused %1 statements; --verbose shows them")
                       .arg(unexpectedFailures()));
    return LeftOut;
}

} // namespace

int main(int argc, char **argv) try {
    host::prepareProcess();
    const QGuiApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("morastore"));

    CLI::App program("morastore: stores of road networks for traffic simulation", "morastore");
    program.footer(kFooter);
    program.set_version_flag("--version", commands::versionText());
    program.require_subcommand(1);
    program.fallthrough();
    std::string language;
    bool verbose = false;
    program
        .add_option("--lang", language, "Language of the host's words: zh, or another; default: the locale's")
        ->type_name("LANG");
    program.add_flag("--verbose", verbose, "Show the statements that a store refused");
    commands::Run run;
    commands::addNew(program, run);
    commands::addImport(program, run);
    commands::addInfo(program, run);
    commands::addShow(program, run);
    commands::addDraw(program, run);
    commands::addCopy(program, run);
    commands::addDigest(program, run);
    commands::addRoundTrip(program, run);
    commands::addUpgrade(program, run);
    commands::addRemove(program, run);
    commands::addProtect(program, run);
    commands::addUnprotect(program, run);
    commands::addChanges(program, run);

    int exitCode = Done;
    if (!parse(program, exitCode))
        return exitCode;
    const host::Session session(QString::fromStdString(language), verbose);
    return execute(run);
} catch (const std::exception &error) {
    std::fprintf(stderr, "morastore: %s\n", error.what());
    return Failed;
}
