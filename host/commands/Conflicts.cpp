#include "host/commands/Conflicts.h"

#include "host/commands/Commands.h"
#include "host/commands/PatchFile.h"
#include "tools/reports/OutputFile.h"

using namespace moratools;

namespace commands {

MergedChanges mergeWithAnswers(const TwoEdits &edits, const std::string &resolve, const QString &conflicts,
                               const QString &outcome) {
    Answers answers;
    if (!resolve.empty()) {
        const PatchFile file(QString::fromStdString(resolve));
        answers = readAnswers(file.device(), file.name(), edits.digests);
    }
    MergedChanges merged = mergeChanges(edits.ours, edits.theirs, answers);
    if (!merged.isOpen())
        return merged;
    writeOutputFile(conflicts, textOf(merged.conflicts, edits.digests));
    throw Incomplete(
        QStringLiteral("%1, both changed the same (%2 conflicts); say in \"take\" of each line of %3 what "
                       "is to be, and give it with --resolve")
            .arg(outcome, QString::number(merged.conflicts.size()), conflicts));
}

} // namespace commands
