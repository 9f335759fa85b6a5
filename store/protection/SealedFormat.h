#pragma once

#include "store/protection/StoreKeys.h"

#include <QByteArray>

#include <functional>

class QIODevice;

/// The format of protected files. Both directions read and write chunk by chunk, in constant memory, and
/// throw Refusal.
///
/// A header of 60 bytes:
///
/// | offset | bytes | content |
/// | 0      | 16    | "MoraStore sealed" |
/// | 16     | 1     | version of the format, 1 |
/// | 17     | 1     | algorithm, 1: crypto_secretstream_xchacha20poly1305 |
/// | 18     | 1     | which key, storekeys::Key |
/// | 19     | 1     | 0 |
/// | 20     | 16    | salt of the file's own key |
/// | 36     | 24    | header of the stream |
///
/// then the content in chunks of 65536 bytes, each 17 bytes longer than its content. The last one is shorter,
/// perhaps without content, and tagged final: a file that was cut off between chunks shows. Every chunk
/// authenticates the header as additional data.
namespace sealedformat {

/// Whether @p bytes, the start of a file, are those of a protected one, damaged perhaps: at least half of the
/// magic text is there, so that a damaged file is not taken for one that was never protected.
bool isSealed(const QByteArray &bytes);

/// Takes a piece of a file.
using Sink = std::function<void(const unsigned char *bytes, std::size_t size)>;

/// Hands on, piece by piece, the protected form of what @p plain holds, with a new salt and stream.
void seal(QIODevice &plain, const Sink &sink, storekeys::Key key);

/// Reads the whole of @p sealed, handing its content on piece by piece; each piece is authentic, and the file
/// is when this returns.
void open(QIODevice &sealed, const Sink &sink);

/// The key that @p sealed needs; stays at the start of it. Throws when the header is of no known form.
storekeys::Key keyOf(QIODevice &sealed);

/// Checks that @p sealed opens to the content of @p plain, byte for byte.
void compare(QIODevice &sealed, QIODevice &plain);

} // namespace sealedformat
