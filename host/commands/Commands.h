#pragma once

#include <CLI/CLI.hpp>

#include <QString>

#include <functional>

/// The subcommands of morastore. Each function adds one with its options to the program; the command that the
/// user chose leaves what it does in `run`, which throws `Failure` when it cannot
/// and `Incomplete` when it left something out.
namespace commands {

using Run = std::function<void()>;

/// What the help says of a command's STORE.
constexpr const char *kStoreHelp =
    "Store: path of a file, or connection string of a PostgreSQL database (\"dbname=... host=...\")";

void addNew(CLI::App &program, Run &run);
void addImport(CLI::App &program, Run &run);
void addInfo(CLI::App &program, Run &run);
void addShow(CLI::App &program, Run &run);
void addDraw(CLI::App &program, Run &run);
void addCopy(CLI::App &program, Run &run);
void addDigest(CLI::App &program, Run &run);
void addRoundTrip(CLI::App &program, Run &run);
void addUpgrade(CLI::App &program, Run &run);
void addRemove(CLI::App &program, Run &run);
void addProtect(CLI::App &program, Run &run);
void addUnprotect(CLI::App &program, Run &run);
void addChanges(CLI::App &program, Run &run);

/// What --version says: program, version, date of the version.
std::string versionText();

/// Writes to stdout: the data that a command was asked for.
void print(const QString &text);
/// Writes a line to stderr: what the user should know besides.
void tell(const QString &line);

} // namespace commands
