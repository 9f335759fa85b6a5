#include "store/protection/SealedFormat.h"

#include "store/protection/Refusal.h"

#include <QIODevice>

#include <algorithm>
#include <cstring>

namespace sealedformat {

namespace {

constexpr char kMagic[] = "MoraStore sealed";
constexpr std::size_t kMagicBytes = sizeof kMagic - 1;
constexpr unsigned char kVersion = 1;
constexpr unsigned char kAlgorithm = 1;
constexpr std::size_t kVersionAt = 16;
constexpr std::size_t kAlgorithmAt = 17;
constexpr std::size_t kKeyAt = 18;
constexpr std::size_t kZeroAt = 19;
constexpr std::size_t kSaltAt = 20;
constexpr std::size_t kStreamAt = kSaltAt + storekeys::kSaltBytes;
constexpr std::size_t kHeaderBytes = kStreamAt + crypto_secretstream_xchacha20poly1305_HEADERBYTES;
constexpr std::size_t kPlainChunk = 65536;
constexpr std::size_t kSealedChunk = kPlainChunk + crypto_secretstream_xchacha20poly1305_ABYTES;
using Header = std::array<unsigned char, kHeaderBytes>;

const QString kDamaged = QStringLiteral("it is damaged or cut off: restore it from a copy");

/// A stream under way; its state holds the file's key.
struct Stream {
    crypto_secretstream_xchacha20poly1305_state state{};
    Stream() = default;
    ~Stream() { sodium_memzero(&state, sizeof state); }
    Stream(const Stream &) = delete;
    Stream &operator=(const Stream &) = delete;
};

void requireSodium() {
    static const bool isReady = sodium_init() >= 0;
    if (!isReady)
        throw Refusal(QStringLiteral("libsodium cannot be used on this system"));
}

/// Reads until `size` bytes are there or the device ends; how many there are.
std::size_t readUpTo(QIODevice &from, unsigned char *bytes, std::size_t size) {
    std::size_t done = 0;
    while (done < size) {
        const qint64 step =
            from.read(reinterpret_cast<char *>(bytes) + done, static_cast<qint64>(size - done));
        if (step < 0)
            throw Refusal(QStringLiteral("it cannot be read (%1)").arg(from.errorString()));
        if (step == 0)
            break;
        done += static_cast<std::size_t>(step);
    }
    return done;
}

storekeys::Salt saltOf(const Header &header) {
    storekeys::Salt salt{};
    std::memcpy(salt.data(), header.data() + kSaltAt, salt.size());
    return salt;
}

Header readHeader(QIODevice &sealed) {
    Header header{};
    const std::size_t size = readUpTo(sealed, header.data(), header.size());
    if (!isSealed(
            QByteArray::fromRawData(reinterpret_cast<const char *>(header.data()), static_cast<int>(size))))
        throw Refusal(QStringLiteral("it is not protected"));
    if (size < header.size() || std::memcmp(header.data(), kMagic, kMagicBytes) != 0)
        throw Refusal(kDamaged);
    if (header[kVersionAt] != kVersion || header[kAlgorithmAt] != kAlgorithm || header[kZeroAt] != 0)
        throw Refusal(QStringLiteral("its form is unknown to this version: use a newer one"));
    return header;
}

} // namespace

bool isSealed(const QByteArray &bytes) {
    int matches = 0;
    for (int i = 0; i < std::min<int>(bytes.size(), kMagicBytes); ++i)
        matches += bytes[i] == kMagic[i];
    return matches >= static_cast<int>(kMagicBytes / 2);
}

void seal(QIODevice &plain, const Sink &sink, storekeys::Key key) {
    requireSodium();
    Header header{};
    std::memcpy(header.data(), kMagic, kMagicBytes);
    header[kVersionAt] = kVersion;
    header[kAlgorithmAt] = kAlgorithm;
    header[kKeyAt] = static_cast<unsigned char>(key);
    randombytes_buf(header.data() + kSaltAt, storekeys::kSaltBytes);
    Secret<storekeys::kFileKeyBytes> fileKey;
    storekeys::derive(key, saltOf(header), fileKey);
    Stream stream;
    crypto_secretstream_xchacha20poly1305_init_push(&stream.state, header.data() + kStreamAt, fileKey.data());
    sink(header.data(), header.size());

    Secret<kPlainChunk> content;
    std::array<unsigned char, kSealedChunk> chunk; // NOLINT(cppcoreguidelines-pro-type-member-init)
    for (std::size_t size = kPlainChunk; size == kPlainChunk;) {
        size = readUpTo(plain, content.data(), kPlainChunk);
        const unsigned char tag = size < kPlainChunk ? crypto_secretstream_xchacha20poly1305_TAG_FINAL
                                                     : crypto_secretstream_xchacha20poly1305_TAG_MESSAGE;
        crypto_secretstream_xchacha20poly1305_push(&stream.state, chunk.data(), nullptr, content.data(), size,
                                                   header.data(), header.size(), tag);
        sink(chunk.data(), size + crypto_secretstream_xchacha20poly1305_ABYTES);
    }
}

storekeys::Key keyOf(QIODevice &sealed) {
    const Header header = readHeader(sealed);
    sealed.seek(0);
    return static_cast<storekeys::Key>(header[kKeyAt]);
}

void open(QIODevice &sealed, const Sink &sink) {
    requireSodium();
    const Header header = readHeader(sealed);
    Secret<storekeys::kFileKeyBytes> fileKey;
    storekeys::derive(static_cast<storekeys::Key>(header[kKeyAt]), saltOf(header), fileKey);
    Stream stream;
    crypto_secretstream_xchacha20poly1305_init_pull(&stream.state, header.data() + kStreamAt, fileKey.data());

    Secret<kPlainChunk> content;
    std::array<unsigned char, kSealedChunk> chunk; // NOLINT(cppcoreguidelines-pro-type-member-init)
    bool isFirst = true;
    for (bool ended = false; !ended; isFirst = false) {
        const std::size_t size = readUpTo(sealed, chunk.data(), kSealedChunk);
        unsigned char tag = 0;
        if (crypto_secretstream_xchacha20poly1305_pull(&stream.state, content.data(), nullptr, &tag,
                                                       chunk.data(), size, header.data(), header.size()) != 0)
            throw Refusal(
                isFirst ? QStringLiteral("it was protected with another key, or it is damaged: use the key "
                                         "it was protected with, or restore it from a copy")
                        : kDamaged);
        ended = size < kSealedChunk;
        if (ended != (tag == crypto_secretstream_xchacha20poly1305_TAG_FINAL))
            throw Refusal(kDamaged);
        sink(content.data(), size - crypto_secretstream_xchacha20poly1305_ABYTES);
    }
}

void compare(QIODevice &sealed, QIODevice &plain) {
    const QString different = QStringLiteral("what was written beside it is not what was read; try again");
    Secret<kPlainChunk> expected;
    open(sealed, [&](const unsigned char *bytes, std::size_t size) {
        if (readUpTo(plain, expected.data(), size) != size || std::memcmp(expected.data(), bytes, size) != 0)
            throw Refusal(different);
    });
    if (readUpTo(plain, expected.data(), 1) != 0)
        throw Refusal(different);
}

} // namespace sealedformat
