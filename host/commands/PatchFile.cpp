#include "host/commands/PatchFile.h"

#include "tools/reports/Failure.h"

#include <QFileInfo>

using namespace moratools;

namespace commands {

PatchFile::PatchFile(const QString &path) : mFile(path) {
    if (QFileInfo(path).isDir())
        throw Failure(QStringLiteral("%1: is a folder; give a patch").arg(path));
    if (!mFile.open(QIODevice::ReadOnly))
        throw Failure(
            QStringLiteral("%1: cannot be read (%2); give a patch that \"morastore diff -o\" has written")
                .arg(path, mFile.errorString()));
}

} // namespace commands
