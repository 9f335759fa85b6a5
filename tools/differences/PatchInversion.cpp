#include "tools/differences/PatchInversion.h"

#include "tools/differences/PatchText.h"
#include "tools/reports/Failure.h"

#include <QIODevice>

#include <utility>

namespace moratools {

namespace {

void write(QIODevice &device, const QByteArray &line) {
    if (device.write(line) != line.size())
        throw Failure(
            QStringLiteral("the patch cannot be written (%1); check the disk").arg(device.errorString()));
}

} // namespace

void invertPatch(QIODevice &patch, const QString &name, QIODevice &inverse) {
    PatchReader reader(patch, name);
    PatchHeader header = reader.header();
    std::swap(header.before, header.after);
    write(inverse, patchtext::lineOf(header));
    RowChange change;
    while (reader.next(change))
        write(inverse, patchtext::lineOf(inverted(change)));
}

} // namespace moratools
