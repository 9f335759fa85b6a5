#include "tests/support/Golden.h"

#include "tests/support/Places.h"

#include <QFile>
#include <gtest/gtest.h>

namespace {

QString pathOf(const QString &name) {
    return sourceFolder() + QStringLiteral("/tests/golden/") + name;
}

} // namespace

bool writesGolden(const QString &name, const QStringList &lines) {
    if (!qEnvironmentVariableIsSet("MORASTORE_WRITE_GOLDEN"))
        return false;
    QFile file(pathOf(name));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly)) << qPrintable(file.fileName());
    file.write(lines.join(QLatin1Char('\n')).toUtf8() + '\n');
    return true;
}

QStringList readGolden(const QString &name) {
    QFile file(pathOf(name));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(file.fileName());
    return QString::fromUtf8(file.readAll()).trimmed().split(QLatin1Char('\n'));
}
