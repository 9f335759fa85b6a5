#pragma once

#include "tools/kinds/StoreInfo.h"
#include "tools/session/StoreUpgrade.h"

/// What is known of a store, in lines for people.
namespace commands {

QString textOf(const moratools::StoreInfo &info);
/// `path` is what the user calls the store.
QString textOf(const moratools::StoreUpgrade &upgrade, const QString &path);

} // namespace commands
