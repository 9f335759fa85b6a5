#include "store/core/Utf8.h"

#include <cstring>

namespace utf8 {

QString decoded(const char *bytes, int size) {
    constexpr int markSize = 3;
    int marks = 0;
    while (size >= markSize && std::memcmp(bytes, "\xEF\xBB\xBF", markSize) == 0) {
        ++marks;
        bytes += markSize;
        size -= markSize;
    }
    const QString text = QString::fromUtf8(bytes, size);
    return marks == 0 ? text : QString(marks, QChar(QChar::ByteOrderMark)) + text;
}

} // namespace utf8
