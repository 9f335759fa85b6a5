#pragma once

#include "model/CallDbResult.h"

#include <QString>

#include <exception>

/// Ends the protection of a file or its removal; caught where the record is made. The reason is one clause
/// for the user.
class Refusal : public std::exception {
public:
    explicit Refusal(const QString &reason, FailureKind kind = FailureKind::Other)
        : mReason(reason), mKind(kind) {}
    const QString &reason() const { return mReason; }
    FailureKind kind() const { return mKind; }

private:
    QString mReason;
    FailureKind mKind;
};
