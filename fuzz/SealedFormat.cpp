#include "store/protection/SealedFormat.h"
#include "fuzz/Fuzzing.h"
#include "store/protection/Refusal.h"

#include <QBuffer>

#include <optional>

namespace {

std::optional<QByteArray> opened(QByteArray sealed) {
    QBuffer from(&sealed);
    from.open(QIODevice::ReadOnly);
    QByteArray content;
    try {
        sealedformat::open(from, [&content](const unsigned char *bytes, std::size_t size) {
            content.append(reinterpret_cast<const char *>(bytes), static_cast<int>(size));
        });
    } catch (const Refusal &) {
        return {};
    }
    return content;
}

QByteArray sealed(QByteArray content) {
    QBuffer from(&content);
    from.open(QIODevice::ReadOnly);
    QByteArray result;
    sealedformat::seal(
        from,
        [&result](const unsigned char *bytes, std::size_t size) {
            result.append(reinterpret_cast<const char *>(bytes), static_cast<int>(size));
        },
        storekeys::Key::Library2);
    return result;
}

/// A file with a byte changed, bytes cut off or bytes added. Its place comes from the first three bytes.
void damage(const QByteArray &input) {
    if (input.size() < 4)
        return;
    // Content of several chunks now and then.
    const QByteArray content = input.mid(3).repeated(input[2] % 16 == 0 ? 70000 / input.size() + 1 : 1);
    const QByteArray whole = sealed(content);
    fuzzing::require(opened(whole) == content, "what was sealed opens");
    const auto place = static_cast<unsigned char>(input[0]) | static_cast<unsigned char>(input[1]) << 8;
    const int at = place % whole.size();
    QByteArray changed = whole;
    changed[at] = static_cast<char>(changed[at] ^ (input[3] ? input[3] : 1));
    for (const QByteArray &damaged : {changed, whole.left(at), whole + input})
        fuzzing::require(!opened(damaged), "what was changed is refused");
}

} // namespace

/// Made-up files are read to a refusal; sealed ones that were changed anywhere are refused.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const QByteArray input = fuzzing::bytesOf(data, size);
    fuzzing::require(!opened(input), "nobody makes up an authentic file");
    damage(input);
    return 0;
}
