#include "tools/session/NewStore.h"

#include "store/Stores.h"
#include "tools/reports/Failure.h"
#include "tools/session/FileInMaking.h"
#include "tools/session/StoreSession.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace moratools {

namespace {

void copyTemplate(const QString &name, const QString &path, const QString &wanted) {
    const QByteArray bytes = stores::templateNamed(name);
    QFile copy(path); // there already, and empty
    if (copy.open(QIODevice::WriteOnly | QIODevice::Unbuffered) && copy.write(bytes) == bytes.size())
        return;
    // A file that took only a part of the bytes reports no error of its own.
    const QString reason =
        copy.error() == QFileDevice::NoError ? QStringLiteral("no room left") : copy.errorString();
    throw Failure(
        QStringLiteral("%1: cannot be written (%2); check the folder and its disk").arg(wanted, reason));
}

} // namespace

QStringList templateNames() {
    return stores::templateNames();
}

QString newestTemplate() {
    return stores::newestTemplate();
}

void makeStore(const QString &path, const QString &name) {
    if (!templateNames().contains(name))
        throw Failure(QStringLiteral("there is no template \"%1\"; the templates are %2")
                          .arg(name, templateNames().join(QStringLiteral(", "))));
    if (!QFileInfo(path).absoluteDir().exists())
        throw Failure(QStringLiteral("%1: the folder does not exist; make it first").arg(path));
    FileInMaking making(path);
    copyTemplate(name, making.path(), path);
    {
        const StoreSession store(making.path(), Access::Write);
        if (store.unexpectedFailures() > 0) {
            throw Failure(QStringLiteral("%1: the new store cannot be brought to the current schema (%2)")
                              .arg(path, store.firstFailureText()));
        }
    }
    making.publish();
}

} // namespace moratools
