#pragma once

#include "tools/MoraToolsExport.h"
#include "tools/differences/RowChange.h"
#include "tools/rows/StoreReader.h"

#include <QJsonValue>

class QIODevice;

namespace moratools {

/// What a patch says of itself.
struct PatchHeader {
    QString before; ///< the digest of the network that it is for
    QString after;  ///< the digest of what becomes of it
    Language words = Language::Unknown;
};

/// The text of a patch: JSON, a line for the header and one for each change. Equal changes are equal bytes.
namespace patchtext {

/// A value as JSON: null, a text, or a number, of which every bit comes back. What JSON has no form for is an
/// object: {"integer": "9223372036854775807"} beyond 2^53, {"real": "nan"}, "inf" or "-inf", {"bytes": BASE64}
/// for what is no text.
MORATOOLS_EXPORT QJsonValue toJson(const QVariant &value);
/// The other way round; false for what toJson() does not give.
MORATOOLS_EXPORT bool fromJson(const QJsonValue &json, QVariant &value);
/// The values of a row as one object.
MORATOOLS_EXPORT QJsonObject toJson(const RowValues &values);

/// @{ A line, with its end.
MORATOOLS_EXPORT QByteArray lineOf(const PatchHeader &header);
MORATOOLS_EXPORT QByteArray lineOf(const RowChange &change);
/// @}

} // namespace patchtext

/// Reads a patch, which may come from anybody: only tables of networks and their columns are
/// named in it, and every value is one. Throws `Failure` with the number of the line otherwise.
class MORATOOLS_EXPORT PatchReader {
public:
    /// Reads the header. `device` is open, and outlives this; `name` is what messages call the patch.
    PatchReader(QIODevice &device, const QString &name);

    const PatchHeader &header() const { return mHeader; }
    /// The next change; false after the last one.
    bool next(RowChange &change);
    /// The number of the line that was read last, from 1.
    int line() const { return mLine; }
    /// Throws `Failure`: the line that was read last is wrong.
    [[noreturn]] void refuse(const QString &objection) const;

private:
    QJsonObject readObject();
    RowValues valuesOf(const QJsonValue &json, const catalogue::Table &table) const;

    QIODevice &mDevice;
    QString mName;
    PatchHeader mHeader;
    int mLine = 0;
};

} // namespace moratools
