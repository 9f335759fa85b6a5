#pragma once

#include <QList>
#include <QString>

#include <string>

/// A network as the user knows it.
struct NamedNetwork {
    long id = 0;
    QString name;
};

/// The one of `present` that `wanted` names: by its number or else by its name. Throws `Failure` when there
/// is none, and when several have the name.
NamedNetwork networkCalled(const QString &wanted, const QList<NamedNetwork> &present);

/// The number of the network of the open store that `wanted` names. Throws as networkCalled() does.
long networkIdOf(const QString &wanted);

/// The same for an option --net: 0, which stands for the store's first network, where it was not given.
long chosenNetwork(const std::string &wanted);
