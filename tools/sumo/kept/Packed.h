#pragma once

#include "tools/MoraToolsExport.h"

#include <QByteArray>
#include <QString>

#include <memory>

namespace moratools {

/// A text that is long and has many repetitions, as a value of a JSON object: base64 of a stream
/// as qCompress() makes it, so that qUncompress(QByteArray::fromBase64(...)) gives it back. Equal for equal text.
MORATOOLS_EXPORT QString packed(const QByteArray &text);

/// Packs many texts, as packed() does one, with the same tables.
class MORATOOLS_EXPORT Packer {
public:
    Packer();
    ~Packer();
    QString operator()(const QByteArray &text);

private:
    Q_DISABLE_COPY(Packer)
    struct Stream;
    std::unique_ptr<Stream> mStream;
};

/// What packed() was given. Null for what it did not make, for what is damaged, and for more than 1 GiB; what
/// a few bytes claim to hold takes no memory.
MORATOOLS_EXPORT QByteArray unpacked(const QString &packed);

/// Adds a number bit for bit, in an order of bytes that is the same everywhere: for a digest, without the cost of
/// its digits.
MORATOOLS_EXPORT void appendBits(QByteArray &text, double number);

/// Tells whether something is as it was: the first 16 hexadecimal digits of the SHA-1 of `text`.
/// It is no protection: who means harm can make another text of the same digest.
MORATOOLS_EXPORT QString shortDigestOf(const QByteArray &text);

} // namespace moratools
