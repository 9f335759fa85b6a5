#pragma once

#include "tools/MoraToolsExport.h"
#include "tools/differences/Merge.h"

class QIODevice;

namespace moratools {

/// The networks that were merged, by their digests.
struct MergedDigests {
    QString base;
    QString ours;
    QString theirs;
};

/// Conflicts as text: JSON, a line that says of which networks, and a line for each conflict. What is to become of
/// it stands in "take": null as long as nobody has said it, "ours", "theirs", or {"value": ...} for a column.
MORATOOLS_EXPORT QByteArray textOf(const std::vector<Conflict> &conflicts, const MergedDigests &networks);

/// The answers in such a text. `name` is what messages call it. Throws `Failure` where it is none, or of other networks.
MORATOOLS_EXPORT Answers readAnswers(QIODevice &device, const QString &name, const MergedDigests &networks);

} // namespace moratools
