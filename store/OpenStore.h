#pragma once

#include "model/CallDbResult.h"
#include "model/LinkType.h"
#include "model/MoraStoreExport.h"
#include "model/Net.h"
#include "model/OpenOptions.h"
#include "model/SpecialWords.h"
#include "model/StoreSettings.h"
#include "model/VehicleComposition.h"
#include "model/VehicleType.h"
#include "store/core/StoreVersion.h"

#include <QHash>
#include <QList>
#include <QSqlDatabase>
#include <QString>
#include <QStringList>

#include <memory>

struct StoreState;

/// A store that is open beside the process's own (gDB), with all that belongs to it: a Qt connection of its
/// own name, the current network, the registries, the dictionary in its language, reserved identifiers, and
/// the list of failures. It replaces nothing, and there may be any number of them, also of one and the same
/// store.
///
///     OpenStore other(path, OpenStore::Access::Read);
///     NetContents net;
///     if (!other.isOpen() || !DBTools::loadNet(other.db(), 1, net))
///         // why: other.failures().last().error
///
/// The operations of DBTools and DBTools_V6 work on it when they are given db(), or another handle of its
/// connection. Whatever they say of gNet, of a registry or of another static member then holds of what it has;
/// those of the process stay as they are. An object that was entered into net() leaves that alone when it is
/// destroyed; it may outlive the open store.
///
/// Of the process remain: the numbers that lane connectors give themselves (LaneConnector::generId), entities
/// that a host makes by their default constructors (they follow gNet and gSpecialWords, as does
/// VehicleType::type()), and lanes that Link::createLanes() makes for a link which is in the tables of no
/// network: enter() a new link into net() first.
///
/// It is used, and destroyed, in the thread that made it. Open stores of several threads do not disturb one
/// another, nor the process's.
class MORASTORE_EXPORT OpenStore {
public:
    using Access = StoreAccess;

    /// @{ Opens an SQLite file, or what @p settings name (the port included; for SQLite the name is the file).
    /// The host's JSON settings play no part. The store is judged as by DBTools, and where it is refused, or
    /// cannot be opened, isOpen() is false and failures() say why. The host's language is taken over from
    /// gSpecialWords.
    OpenStore(const QString &path, Access access);
    OpenStore(const StoreSettings &settings, Access access);
    /// @}
    /// @{ The same with words that stay as the store has them, and with a current network, unless @p options say
    /// otherwise.
    explicit OpenStore(const QString &path, const OpenOptions &options = {});
    explicit OpenStore(const StoreSettings &settings, const OpenOptions &options = {});
    /// @}
    /// Closes the connection, taking back a transaction that is open. Handles and statements of it that the
    /// host has made go first.
    ~OpenStore();
    OpenStore(const OpenStore &) = delete;
    OpenStore &operator=(const OpenStore &) = delete;

    /// Whether the store was opened, and the connection still is.
    bool isOpen() const;
    /// Whether it was opened for reading, be it that its file may not be written to.
    bool isReadOnly() const;
    /// The connection, to hand to operations; not to be assigned to.
    QSqlDatabase &db();
    const StoreSettings &settings() const;

    /// The store's generation when it was opened.
    int version() const;
    /// Whether its format is that of several networks (generation 6).
    bool hasSeveralNets() const { return isOpen() && probes::hasSeveralNets(version()); }
    /// Whether its link types do not carry the Chinese names.
    bool isInternational() const;

    /// Failed calls, of DBTools and of DBTools_V6, since it was opened; the host may empty the list.
    QList<CallDbResult> &failures();
    const QList<CallDbResult> &failures() const;

    /// @{ What gNet, ghVehicleType, ghVehicleComposition, glLinkType and gSpecialWords are to the process's
    /// store.
    Net &net();
    QHash<long, VehicleType> &vehicleTypes();
    QHash<long, VehicleComposition> &compositions();
    QList<LinkType> &linkTypes();
    SpecialWords &words();
    /// @}
    /// @{ What DBTools::mhId and DBTools::mhNetMaxId are to it.
    QHash<long, QHash<QString, QList<long>>> &reservedIds();
    QHash<long, QHash<QString, long>> &highestIds();
    /// @}

private:
    /// Opens the connection; isOpen() says whether the store is the one that is wanted.
    void open(const StoreSettings &settings, Access access);

    std::unique_ptr<StoreState> mState;
    bool mIsOpened = false;
};
