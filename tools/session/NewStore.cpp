#include "tools/session/NewStore.h"

#include "tools/reports/Failure.h"
#include "tools/session/FileInMaking.h"
#include "tools/session/StoreSession.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace moratools {

namespace {

const QString kTemplates = QStringLiteral(":/Resources/EmptyNet");

void copyTemplate(const QString &resource, const QString &path, const QString &wanted) {
    QFile source(resource);
    QFile copy(path); // there already, and empty
    if (!source.open(QIODevice::ReadOnly))
        throw Failure(
            QStringLiteral("the template %1 cannot be read (%2)").arg(resource, source.errorString()));
    const QByteArray bytes = source.readAll();
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
    QStringList names = QDir(kTemplates).entryList(QDir::Files, QDir::Name);
    // The dumps for a database server are no SQLite stores.
    names.erase(std::remove_if(names.begin(), names.end(),
                               [](const QString &name) { return name.endsWith(QLatin1String(".backup")); }),
                names.end());
    return names;
}

QString newestTemplate() {
    return QStringLiteral("EmptyNet_V6.0.0");
}

void makeStore(const QString &path, const QString &name) {
    if (!templateNames().contains(name))
        throw Failure(QStringLiteral("there is no template \"%1\"; the templates are %2")
                          .arg(name, templateNames().join(QStringLiteral(", "))));
    if (!QFileInfo(path).absoluteDir().exists())
        throw Failure(QStringLiteral("%1: the folder does not exist; make it first").arg(path));
    FileInMaking making(path);
    copyTemplate(kTemplates + QLatin1Char('/') + name, making.path(), path);
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
