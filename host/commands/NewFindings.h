#pragma once

#include "tools/session/StoreAddress.h"

#include <QSet>
#include <QString>

#include <string>

namespace commands {

/// What a check finds in a network after a change and did not find before: errors and warnings.
class NewFindings {
public:
    /// Checks a network that the change comes from. Throws `Failure` as checkStore() does.
    void checkBefore(const moratools::StoreAddress &store, const std::string &net);
    /// Checks what came of it and tells the user what is new, a line each.
    void tellAfter(const moratools::StoreAddress &store, const std::string &net) const;

private:
    QSet<QString> mKnown;
};

} // namespace commands
