#pragma once

#include "tools/MoraToolsExport.h"

#include <QList>
#include <QString>

#include <string>

namespace moratools {

class StoreSession;

/// A network as the user knows it.
struct NamedNetwork {
    long id = 0;
    QString name;
};

/// The one of `present` that `wanted` names: by its number or else by its name. Throws `Failure` when there
/// is none, and when several have the name.
MORATOOLS_EXPORT NamedNetwork networkCalled(const QString &wanted, const QList<NamedNetwork> &present);

/// The number of the network of the store that `wanted` names. Throws as networkCalled() does.
MORATOOLS_EXPORT long networkIdOf(const StoreSession &store, const QString &wanted);

/// The same for an option --net: 0, which stands for the store's first network, where it was not given.
MORATOOLS_EXPORT long chosenNetwork(const StoreSession &store, const std::string &wanted);

/// Throws `Failure` where a network of the store is called `name`, and where that cannot be read.
MORATOOLS_EXPORT void requireFreeName(const StoreSession &store, const QString &name);

} // namespace moratools
