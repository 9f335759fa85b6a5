#pragma once

#include "tools/sumo/reader/CompanionReader.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

/// Reads companions from text that a test gives.
class CompanionFile : public testing::Test {
protected:
    QString write(const QByteArray &content, const QString &root = QStringLiteral("additional")) {
        QFile target(mFolder.filePath(QStringLiteral("some.xml")));
        EXPECT_TRUE(target.open(QIODevice::WriteOnly));
        target.write("<" + root.toUtf8() + ">\n" + content + "\n</" + root.toUtf8() + ">\n");
        return target.fileName();
    }
    moratools::SumoCompanions read(const QByteArray &content) {
        moratools::SumoCompanions companions;
        readSumoCompanion(write(content), companions);
        return companions;
    }

    QTemporaryDir mFolder;
};
