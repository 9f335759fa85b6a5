#pragma once

#include "model/StoredJson.h"
#include "store/core/Store.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>

class Net;
struct NetRecord;

/// Rows of table Net and the current network.
namespace networks {

/// What a row of Net holds; the further attributes as JSON text.
struct Record {
    long id = 0;
    QString name;
    QString sourceUrl;
    QString sourceType;
    QString backgroundUrl;
    double centerX = 0;
    double centerY = 0;
    QString caption;
    QString otherAttrsJson;
    bool isDefault = false;
    QString attributesObjection; ///< why the further attributes cannot be stored; empty when they can

    void setAttributes(const StoredJson &attributes);
};

Record recordOf(const NetRecord &net);

/// Writes @p record; false without a record of failure when its name (generation 6: its id) is taken.
bool insertNetwork(const Store &store, const Record &record, bool useTransaction);
/// Writes @p record over the row of the store's network (generation 6).
bool updateNetwork(const Store &store, const Record &record, bool useTransaction);

/// Writes what differs between a network's record and what it was; false, with a record of failure, where the
/// store has no place for it.
bool changeNetwork(const Store &store, const NetRecord &now, const NetRecord &before);

/// Makes the store's network the current one; null, and that is unchanged, without its row.
Net *loadNetworkById(const Store &store);
/// The same for the network of that name, or the first one for an empty name.
Net *loadNetworkByName(const Store &store, const QString &name);
/// @{ Whether the store has the row of its network, or of any network; none when that could not be read.
std::optional<bool> networkExists(const Store &store);
std::optional<bool> isAnyNetworkThere(const Store &store);
/// @}
/// Refuses, with a record, a store of several networks that has none of the store's id (0 is none): rows and
/// counters of it would belong to nothing.
bool requireNetwork(const Store &store);
long largestNetworkId(const Store &store);
/// All networks with id, name and further attributes.
QList<Net> readNetworks(const Store &store);
/// The complete records of all networks by id; none beside a recorded failure.
QList<NetRecord> readRecords(const Store &store);
/// The same without caption and attributes in a store of several networks; what was read before a failure.
QList<NetRecord> readBriefRecords(const Store &store);
/// Ids and names alone; what was read before a failure.
QList<QPair<long, QString>> readNames(const Store &store);

QByteArray readBackgroundMap(const Store &store);

} // namespace networks
