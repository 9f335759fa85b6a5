#include "tools/sumo/kept/Packed.h"

#include <QCryptographicHash>
#include <QtEndian>

#include <zlib.h>

namespace moratools {

namespace {

constexpr int kLengthBytes = 4; // qCompress() puts the length before zlib's stream
constexpr quint32 kMostBytes = 1024u * 1024 * 1024;
// "Technical Details" of zlib: no stream expands to more than 1032 times its size.
constexpr quint64 kMostExpansion = 1032;
// Measured with the insides of 11,606 junctions: a sixth smaller than level 1, and no level beyond saves more.
constexpr int kLevel = 5;
constexpr int kDigits = 16;

} // namespace

QString packed(const QByteArray &text) {
    return QString::fromLatin1(qCompress(text, kLevel).toBase64());
}

QByteArray unpacked(const QString &packed) {
    const QByteArray bytes = QByteArray::fromBase64(packed.toLatin1());
    if (bytes.size() <= kLengthBytes)
        return {};
    const auto length = qFromBigEndian<quint32>(bytes.constData());
    if (length > kMostBytes || length > quint64(bytes.size()) * kMostExpansion)
        return {};
    QByteArray text(int(length), Qt::Uninitialized);
    uLongf written = length;
    const int result = uncompress(reinterpret_cast<Bytef *>(text.data()), &written,
                                  reinterpret_cast<const Bytef *>(bytes.constData() + kLengthBytes),
                                  uLong(bytes.size() - kLengthBytes));
    return result == Z_OK && written == length ? text : QByteArray();
}

QString shortDigestOf(const QByteArray &text) {
    return QString::fromLatin1(
        QCryptographicHash::hash(text, QCryptographicHash::Sha256).toHex().left(kDigits));
}

} // namespace moratools
