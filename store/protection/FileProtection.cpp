#include "store/protection/FileProtection.h"

#include "store/protection/FileReplacement.h"
#include "store/protection/Refusal.h"
#include "store/protection/SealedFormat.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <functional>

namespace fileprotection {

namespace {

bool run(const QString &path, FailureList &failures, const std::function<void()> &work) {
    try {
        work();
        return true;
    } catch (const Refusal &refusal) {
        return recordFailure(failures, {},
                             QStringLiteral("%1: %2").arg(QDir::toNativeSeparators(path), refusal.reason()),
                             0, refusal.kind());
    }
}

/// A file that is sealed with a key of the library may come from anybody. Where the host has a key of its own
/// it would pass as the host's, so such a file is opened only for a caller who asks for that key.
void requireKey(storekeys::Key used, std::optional<storekeys::Key> named) {
    if (named && used != *named)
        throw Refusal(QStringLiteral("it was protected with another key"));
    const bool isLibrarys = used == storekeys::Key::Library1 || used == storekeys::Key::Library2;
    if (!named && isLibrarys && storekeys::preferred() == storekeys::Key::Host)
        throw Refusal(
            QStringLiteral(
                "it was protected with key %1 of the library, which everybody has, and not with the "
                "host's own (\"__storekey\"): where that is meant, name that key (encryptDecryptFileByKey%1, \"morastore unprotect "
                "--library-key %1\")")
                .arg(static_cast<int>(used)));
}

} // namespace

bool isProtected(const QString &path) {
    QFile file(path);
    return QFileInfo(path).isFile() && file.open(QIODevice::ReadOnly) &&
           sealedformat::isSealed(file.read(64));
}

bool protect(const QString &path, storekeys::Key key, FailureList &failures) {
    return run(path, failures, [&] {
        if (isProtected(path))
            throw Refusal(QStringLiteral("it is protected already"));
        FileReplacement replacement(path);
        sealedformat::seal(replacement.source(), replacement.sink(), key);
        replacement.finishWriting();
        sealedformat::compare(replacement.target(), replacement.source());
        replacement.commit();
    });
}

bool unprotect(const QString &path, std::optional<storekeys::Key> key, FailureList &failures) {
    return run(path, failures, [&] {
        FileReplacement replacement(path);
        requireKey(sealedformat::keyOf(replacement.source()), key);
        sealedformat::open(replacement.source(), replacement.sink());
        replacement.finishWriting();
        sealedformat::compare(replacement.source(), replacement.target());
        replacement.commit();
    });
}

bool toggle(const QString &path, std::optional<storekeys::Key> key, FailureList &failures) {
    return isProtected(path) ? unprotect(path, key, failures)
                             : protect(path, key.value_or(storekeys::preferred()), failures);
}

} // namespace fileprotection
