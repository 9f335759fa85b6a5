#pragma once

#include "tools/MoraToolsExport.h"

#include <QByteArray>
#include <QString>

#include <exception>

namespace moratools {

/// An operation that cannot go on; what else goes wrong in this library is a bug. The message is one sentence
/// for the user: it names the thing that is wrong and what to do about it. Texts of a store or a file that it
/// repeats are as they are there: who shows it on a terminal writes control characters out.
class MORATOOLS_EXPORT Failure : public std::exception {
public:
    explicit Failure(const QString &message) : mMessage(message), mUtf8(message.toUtf8()) {}

    const QString &message() const { return mMessage; }
    /// The message in UTF-8.
    const char *what() const noexcept override { return mUtf8.constData(); }

private:
    QString mMessage;
    QByteArray mUtf8;
};

} // namespace moratools
