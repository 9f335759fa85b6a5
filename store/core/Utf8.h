#pragma once

#include "model/MoraStoreExport.h"

#include <QString>

/// UTF-8 as stores hold it.
namespace utf8 {

/// The text of these bytes. A leading U+FEFF is a character of the text, while QString::fromUtf8() takes it
/// for a mark and drops it; a NUL is one, too.
MORASTORE_EXPORT QString decoded(const char *bytes, int size);

/// Whether @p text, decoded from these bytes, holds all of them: what is not UTF-8 is replaced on the way.
inline bool isWhole(const QString &text, const char *bytes, int size) {
    return !text.contains(QChar::ReplacementCharacter) ||
           text.toUtf8() == QByteArray::fromRawData(bytes, size);
}

} // namespace utf8
