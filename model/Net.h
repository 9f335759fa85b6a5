#pragma once

#include "Configuration.h"
#include "MoraStoreExport.h"
#include "NetIndex.h"

#include <MoraInterfaces/IRoadNet.h>

#include <QJsonObject>
#include <QString>

class Connector;
class Lane;
class LaneConnector;
class Link;
class QSqlDatabase;
class SignalPhase;

/// The row of table Net.
struct NetRecord {
    long netId = 0; ///< 0: no network
    QString name;
    QString sourceType = QStringLiteral("MoraSim"); ///< kind of source the network came from
    QString sourceUrl;
    QString backgroundUrl;
    QString caption;
    QJsonObject otherAttrsJson;
    double centerX = 0;
    double centerY = 0;
    bool isDefault = false; ///< the network to open by default
};

/// A network: its record, its scene configuration, and tables of its objects by id.
///
/// The tables are filled by the reads and by the enter functions. They are indexes and own nothing: what a
/// read returned belongs to its caller. An object is in the tables of one network at most: it leaves them when
/// another network is given it, and when it is destroyed, be that before the network or after it. Copying
/// takes the record and the configuration, never the tables.
class MORASTORE_EXPORT Net : public IRoadNet, public NetRecord {
public:
    Net();
    Net(const Net &other);
    /// The own tables stay when both are records of the same network, and are emptied otherwise.
    Net &operator=(const Net &other);
    ~Net() override;

    /// The record alone.
    const NetRecord &record() const { return *this; }

    long id() const override { return netId; }
    QString netName() const override { return name; }
    QString url() const override { return sourceUrl; }
    QString type() const override { return sourceType; }
    QString bkgUrl() const override { return backgroundUrl; }
    QString explain() const override { return caption; }
    QPointF centerPoint() const override { return {centerX, centerY}; }
    QJsonObject otherAttrs() const override { return otherAttrsJson; }

    /// Takes the record over; another network's record empties the tables. The configuration stays.
    void loadRecord(const NetRecord &record);

    /// Whether, in a store of several networks, objects of network `id` may be found in and entered into the
    /// tables: it is this network. While no network is loaded (id 0) that holds for none.
    bool isCurrent(long id) const { return netId != 0 && netId == id; }

    Configuration &config() { return mConfig; }
    const Configuration &config() const { return mConfig; }
    /// Reads this network's scene configuration from a store, with DBTools::selectConfiguration().
    bool readConfiguration(QSqlDatabase &db);

    /// The connection of the open store whose current network this is (gDB for gNet); null for any other
    /// network.
    QSqlDatabase *connection() const { return mConnection; }

    /// The links and the connectors of the tables, in ascending order of their ids.
    QList<Link *> lLink() const { return mLinks.inAscendingOrder(); }
    QList<Connector *> lConnector() const { return mConnectors.inAscendingOrder(); }

    /// The object of that id, or null. It keeps its owner.
    Link *getLinkById(long id) const { return mLinks.find(id); }
    Lane *getLaneById(long id) const { return mLanes.find(id); }
    Connector *getConnectorById(long id) const { return mConnectors.find(id); }
    LaneConnector *getLaneConnectorById(long id) const { return mLaneConnectors.find(id); }
    SignalPhase *getSignalPhaseById(long id) const { return mSignalPhases.find(id); }

    /// Enters the object under its id unless the table has one of that id: the first one stays. A link's
    /// lanes are entered one by one.
    void enter(Link *link);
    void enter(Lane *lane);
    /// Enters the lane connectors that it has by now, too.
    void enter(Connector *connector);
    void enter(SignalPhase *phase);

    /// Empties the tables. The objects stay with their owners.
    void releaseNet();

private:
    friend struct StoreState;

    Configuration mConfig;
    QSqlDatabase *mConnection = nullptr;
    NetIndex<Link> mLinks{this};
    NetIndex<Lane> mLanes{this};
    NetIndex<Connector> mConnectors{this};
    NetIndex<LaneConnector> mLaneConnectors{this};
    NetIndex<SignalPhase> mSignalPhases{this};
};

/// The current network of the process's store.
extern MORASTORE_EXPORT Net &gNet;
