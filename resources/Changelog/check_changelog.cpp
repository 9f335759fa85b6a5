#include "model/AppVersionManager.h"

#include <QCoreApplication>
#include <QFile>

#include <cstdio>

/// Checks a version history as the library will read it.
///
/// Usage: check_changelog CHANGELOG.md VERSION
///
/// Fails with one line on stderr when the text is malformed or out of order, or when its newest version is
/// not VERSION.

namespace {

QString complaint(const QString &path, const QString &version) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return file.errorString();
    const QByteArray bytes = file.readAll();
    const QString text = QString::fromUtf8(bytes);
    if (text.toUtf8() != bytes)
        return QStringLiteral("this is not UTF-8");
    QString error;
    const auto history = AppVersionManager::fromMarkdown(text, error);
    if (!history)
        return error;
    const QString newest = history->newest().number.toString();
    if (newest != version)
        return QStringLiteral("the newest version is %1, the project's is %2").arg(newest, version);
    return {};
}

} // namespace

int main(int argc, char **argv) {
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 3) {
        std::fputs("usage: check_changelog CHANGELOG.md VERSION\n", stderr);
        return 2;
    }
    const QString reason = complaint(arguments[1], arguments[2]);
    if (reason.isEmpty())
        return 0;
    std::fprintf(stderr, "%s: %s\n", qPrintable(arguments[1]), qPrintable(reason));
    return 1;
}
