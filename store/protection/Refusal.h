#pragma once

#include <QString>

#include <exception>

/// Ends the protection of a file or its removal; caught where the record is made. The reason is one clause
/// for the user.
class Refusal : public std::exception {
public:
    explicit Refusal(const QString &reason) : mReason(reason) {}
    const QString &reason() const { return mReason; }

private:
    QString mReason;
};
