#pragma once

#include "tests/support/Places.h"

#include <QFile>
#include <gtest/gtest.h>

/// A page of the manual has from `start` on what is generated from the code; MORASTORE_WRITE_GOLDEN=1 writes it
/// anew.
inline void expectGenerated(const char *page, const char *start, const QString &generated) {
    QFile manual(sourceFolder() + QStringLiteral("/docs/") + QLatin1String(page));
    ASSERT_TRUE(manual.exists() && manual.open(QIODevice::ReadWrite)) << page;
    const QString text = QString::fromUtf8(manual.readAll());
    const int begin = text.indexOf(QLatin1String(start));
    ASSERT_GE(begin, 0) << page;
    if (qEnvironmentVariableIsSet("MORASTORE_WRITE_GOLDEN")) {
        manual.resize(0);
        manual.write((text.left(begin) + generated).toUtf8());
        return;
    }
    EXPECT_TRUE(text.mid(begin) == generated)
        << page << " has other tables; write them anew with MORASTORE_WRITE_GOLDEN=1";
}
