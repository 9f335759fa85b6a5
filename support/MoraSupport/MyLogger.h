#pragma once

#include "MoraSupportExport.h"

#include <QByteArray>
#include <QLoggingCategory>
#include <QString>

/// A named log. Its texts go to Qt's logging under the category "MoraStore.<name>": to stderr by default, to
/// wherever the host's message handler (qInstallMessageHandler) sends them, and filtered by Qt's logging
/// rules.
class MORASUPPORT_EXPORT MyLogger {
public:
    explicit MyLogger(const QString &name);

    /// Writes one critical message; line breaks and quotes reach the handler as they are.
    void error(const QString &text);

private:
    Q_DISABLE_COPY(MyLogger)

    const QByteArray mCategoryName; // QLoggingCategory keeps a pointer to it
    QLoggingCategory mCategory;
};
