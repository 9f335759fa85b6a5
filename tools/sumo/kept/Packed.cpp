#include "tools/sumo/kept/Packed.h"

#include <QCryptographicHash>
#include <QtEndian>

#include <cstring>
#include <zlib.h>

namespace moratools {

namespace {

constexpr int kLengthBytes = 4; // qCompress() puts the length before zlib's stream
constexpr quint32 kMostBytes = 1024u * 1024 * 1024;
// "Technical Details" of zlib: no stream expands to more than 1032 times its size.
constexpr quint64 kMostExpansion = 1032;
// The fastest: the next levels take half as long again to save a tenth.
constexpr int kLevel = 1;
// zlib's number for the size of its table of repetitions, which it clears for each text: half of the usual,
// because most are short.
constexpr int kTable = 6;
constexpr int kWindow = 15;
constexpr int kDigits = 16;

} // namespace

struct Packer::Stream : z_stream {
    Stream() : z_stream() { deflateInit2(this, kLevel, Z_DEFLATED, kWindow, kTable, Z_DEFAULT_STRATEGY); }
    ~Stream() { deflateEnd(this); }
    Q_DISABLE_COPY(Stream)
};

Packer::Packer() : mStream(std::make_unique<Stream>()) {}

Packer::~Packer() = default;

QString Packer::operator()(const QByteArray &text) {
    deflateReset(mStream.get());
    QByteArray bytes(kLengthBytes + int(deflateBound(mStream.get(), uLong(text.size()))), Qt::Uninitialized);
    qToBigEndian(quint32(text.size()), bytes.data());
    mStream->next_in = reinterpret_cast<Bytef *>(const_cast<char *>(text.constData()));
    mStream->avail_in = uInt(text.size());
    mStream->next_out = reinterpret_cast<Bytef *>(bytes.data() + kLengthBytes);
    mStream->avail_out = uInt(bytes.size() - kLengthBytes);
    deflate(mStream.get(), Z_FINISH);
    bytes.resize(kLengthBytes + int(mStream->total_out));
    return QString::fromLatin1(bytes.toBase64());
}

QString packed(const QByteArray &text) {
    return Packer()(text);
}

QByteArray unpacked(const QString &packed) {
    const QByteArray bytes = QByteArray::fromBase64Encoding(packed.toLatin1()).decoded;
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

void appendBits(QByteArray &text, double number) {
    quint64 bits = 0;
    static_assert(sizeof bits == sizeof number);
    std::memcpy(&bits, &number, sizeof bits);
    bits = qToLittleEndian(bits);
    text.append(reinterpret_cast<const char *>(&bits), int(sizeof bits));
}

QString shortDigestOf(const QByteArray &text) {
    return QString::fromLatin1(
        QCryptographicHash::hash(text, QCryptographicHash::Sha1).toHex().left(kDigits));
}

} // namespace moratools
