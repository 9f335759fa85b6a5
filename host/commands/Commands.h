#pragma once

#include "tools/reports/Failure.h"

#include <CLI/CLI.hpp>

#include <QString>

#include <functional>

class QJsonDocument;

/// The subcommands of morastore. Each function adds one with its options to the program; the command that the
/// user chose leaves in `run` what it does.
namespace commands {

/// The operation went through, but what it had to say cannot be written. The message is empty where nobody
/// wants to know: who read the output has left, and nothing was changed.
class OutputLost : public moratools::Failure {
public:
    using moratools::Failure::Failure;
};

/// The operation went through, but without a part of what it was given. The message says which part.
class Incomplete : public moratools::Failure {
public:
    using moratools::Failure::Failure;
};

/// What the user chose.
struct Run {
    /// Throws `Failure` when it cannot be done, `Incomplete` when something was left out, and `OutputLost`
    /// when it is done and its output cannot be written.
    std::function<void()> work;
    bool paints = false; ///< needs fonts, which a QGuiApplication has
};

/// What the help says of a command's STORE.
constexpr const char *kStoreHelp =
    "Store: path of a file, or connection string of a PostgreSQL database (\"dbname=... host=...\")";
/// What it says of an option --net for one network.
constexpr const char *kNetHelp =
    "Number or name of the network; a number goes first; default: the store's first";

/// The longer side of pictures that are not asked for by size, in pixels.
constexpr int kPictureSize = 2400;

void addNew(CLI::App &program, Run &run);
void addImport(CLI::App &program, Run &run);
void addExport(CLI::App &program, Run &run);
void addInfo(CLI::App &program, Run &run);
void addShow(CLI::App &program, Run &run);
void addDraw(CLI::App &program, Run &run);
void addCopy(CLI::App &program, Run &run);
void addDigest(CLI::App &program, Run &run);
void addDiff(CLI::App &program, Run &run);
void addApply(CLI::App &program, Run &run);
void addInvert(CLI::App &program, Run &run);
void addMerge(CLI::App &program, Run &run);
void addRoundTrip(CLI::App &program, Run &run);
void addUpdate(CLI::App &program, Run &run);
void addUpgrade(CLI::App &program, Run &run);
void addCompact(CLI::App &program, Run &run);
void addPlace(CLI::App &program, Run &run);
void addRemove(CLI::App &program, Run &run);
void addProtect(CLI::App &program, Run &run);
void addUnprotect(CLI::App &program, Run &run);
void addChanges(CLI::App &program, Run &run);
void addCheck(CLI::App &program, Run &run);

/// What --version says: program, version, date of the version.
std::string versionText();

/// Writes to stdout: the data that a command was asked for. Control characters are written out, but for line
/// breaks: texts of a store go through printable::line() first. Throws `OutputLost` when the text cannot be
/// written; `done` is what the user must know then, where something was changed: "network 2 is in the store".
void print(const QString &text, const QString &done = {});
/// The same for JSON, from which every text can be had as it is.
void printJson(const QJsonDocument &document, const QString &done = {});
/// Writes one line to stderr: what the user should know besides. Control characters are written out.
void tell(const QString &line);

} // namespace commands
