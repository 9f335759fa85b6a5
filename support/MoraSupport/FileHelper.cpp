#include "FileHelper.h"

#include "MyLogger.h"

#include <QFile>
#include <QJsonDocument>
#include <QStandardPaths>

namespace {

QJsonObject refused(const QString &reason) {
    MyLogger(QStringLiteral("config")).error(reason);
    return {};
}

} // namespace

QJsonObject FileHelper::readConfigFile() {
    QString path = qEnvironmentVariable("MORA_CONFIG");
    if (path.isEmpty())
        path = QStandardPaths::locate(QStandardPaths::AppConfigLocation, QStringLiteral("mora.json"));
    if (path.isEmpty())
        return {};

    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return refused(
            QStringLiteral("Configuration file \"%1\" cannot be read: %2").arg(path, file.errorString()));
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &error);
    if (error.error != QJsonParseError::NoError)
        return refused(QStringLiteral("Configuration file \"%1\" is no valid JSON: %2 at byte %3")
                           .arg(path, error.errorString(), QString::number(error.offset)));
    if (!document.isObject())
        return refused(QStringLiteral("Configuration file \"%1\" holds no JSON object").arg(path));
    return document.object();
}
