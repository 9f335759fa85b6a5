#include "store/core/OpenTransactions.h"

#include <QSqlDriver>

#include <algorithm>

bool OpenTransactions::Level::counts(quint64 failure) const {
    return failure > failureBefore && std::none_of(undone.begin(), undone.end(), [failure](const auto &part) {
               return failure > part.first && failure <= part.second;
           });
}

OpenTransactions::OpenTransactions(QSqlDriver *driver) : QObject(driver) {}

OpenTransactions::~OpenTransactions() {
    // The engine's connection has gone before its driver.
    for (const Level &level : levels) {
        if (level.guard)
            level.guard->forgetEngine();
    }
}

OpenTransactions &OpenTransactions::of(QSqlDriver *driver) {
    for (QObject *child : driver->children()) {
        if (auto *open = dynamic_cast<OpenTransactions *>(child))
            return *open;
    }
    return *new OpenTransactions(driver); // the driver's
}
