#include "store/bulk/JsonCheck.h"
#include "fuzz/Fuzzing.h"

#include <QJsonDocument>

/// The one-pass check says what Qt's parser says.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const QByteArray text = fuzzing::bytesOf(data, size);
    fuzzing::require(isJsonObject(text) == QJsonDocument::fromJson(text).isObject(), "an object for both");
    return 0;
}
