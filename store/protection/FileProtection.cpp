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
        CallDbResult failure;
        failure.error = QStringLiteral("%1: %2").arg(QDir::toNativeSeparators(path), refusal.reason());
        failures.append(failure);
        return false;
    }
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
        if (key && sealedformat::keyOf(replacement.source()) != *key)
            throw Refusal(QStringLiteral("it was protected with another key"));
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
