#pragma once

#include <QByteArray>
#include <QString>

#include <exception>

/// An operation of the host that cannot go on. The message is one sentence for the user: it names the thing
/// that is wrong and what to do about it.
class Failure : public std::exception {
public:
    explicit Failure(const QString &message) : mMessage(message), mUtf8(message.toUtf8()) {}

    const QString &message() const { return mMessage; }
    const char *what() const noexcept override { return mUtf8.constData(); }

private:
    QString mMessage;
    QByteArray mUtf8;
};

/// The operation went through, but what it had to say cannot be written. The message is empty where nobody
/// wants to know: who read the output has left, and nothing was changed.
class OutputLost : public Failure {
public:
    using Failure::Failure;
};

/// The operation went through, but without a part of what it was given. The message says which part.
class Incomplete : public Failure {
public:
    using Failure::Failure;
};
