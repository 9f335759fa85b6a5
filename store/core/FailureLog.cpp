#include "store/core/FailureLog.h"

#include <MoraSupport/MyLogger.h>

#include <QFileInfo>

QString failureLogText(const QString &storeName, const QDateTime &now, const FailureList &failures) {
    QString text = storeName + QStringLiteral("  ") + now.toString(QStringLiteral("yyyy-MM-dd hh:mm:ss"));
    int number = 0;
    for (const CallDbResult &failure : failures) {
        text += QStringLiteral("\n%1\n").arg(++number);
        if (!failure.sql.isEmpty())
            text += QLatin1Char('"') + failure.sql + QStringLiteral("\"\n");
        if (failure.id > 0)
            text += QStringLiteral("id:%1\n").arg(failure.id);
        text += failure.error;
    }
    return text;
}

void writeFailureLog(const QString &databaseName, const FailureList &failures) {
    const QString name = QFileInfo(databaseName).baseName();
    MyLogger(name).error(failureLogText(name, QDateTime::currentDateTime(), failures));
}
