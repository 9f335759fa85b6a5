#pragma once

#include <QByteArray>
#include <QFile>
#include <QTemporaryDir>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

/// What the targets share. A target is called with bytes that the fuzzer makes up; whatever they are, the
/// code under test must neither crash nor hang, and what must hold of its result is required.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

namespace fuzzing {

inline QByteArray bytesOf(const std::uint8_t *data, std::size_t size) {
    return {reinterpret_cast<const char *>(data), static_cast<int>(size)};
}

/// Ends the run as a finding.
inline void require(bool holds, const char *what) {
    if (holds)
        return;
    std::fprintf(stderr, "required, but does not hold: %s\n", what);
    std::abort();
}

/// A file of the process, for code that reads by path.
class ScratchFile {
public:
    QString path() const { return mFolder.filePath(QStringLiteral("input")); }
    void write(const QByteArray &bytes) const {
        QFile file(path());
        require(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size(), "a scratch file");
    }

private:
    QTemporaryDir mFolder;
};

} // namespace fuzzing
