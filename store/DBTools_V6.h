#pragma once

#include "store/DBTools.h"

/// The operations for stores of generation 6, which hold several networks.
///
/// Each operation does what its namesake of DBTools describes, for network @p netId of a generation-6 store,
/// without asking for the version; its failures go to the list of this class. A read for a network that is
/// not the current one neither answers from gNet's tables nor enters into them.
class MORASTORE_EXPORT DBTools_V6 {
public:
    DBTools_V6() = delete;

    /// @name Connection settings of this class
    /// Independent of those of DBTools.
    /// @{
    static QString mDbDriver;
    static QString mDbHost;
    static int mDbPort;
    static QString mDbName;
    static QString mDbUser;
    static QString mDbPassword;
    /// @}
    /// Failed calls of this class since the last opening.
    static QList<CallDbResult> mlCallDbResult;
    static QStringList mlTableName;
    static QHash<QString, QString> mhTablePK;

    /// Opens an SQLite file for a backup copy on Qt's default connection (so it replaces the open one),
    /// without upgrading it or reading its version. A path that does not exist is refused and no file is
    /// made.
    /// @return validateDatabase() of the connection. The flag is not used.
    static bool openDatabaseForBackup(QSqlDatabase &db, QString path, bool);
    /// As DBTools::validateDatabase(), recorded in this class.
    static bool validateDatabase(QSqlDatabase &db);
    /// As DBTools::validateQuery(), recorded in this class.
    static bool validateQuery(QSqlQuery &query);

    static bool initDictionary(QSqlDatabase &db, long netId, bool useTransaction);

    static bool getIDByTableName(QSqlDatabase &db, long netId, QString table, long &id);

    /// Writes a network record. An empty @p name becomes "MoraSim".
    /// @return false, with nothing written or recorded, when the id is taken already.
    static bool insertNet(QSqlDatabase &db, long id, QString name, QPointF center, QString sourceType,
                          QString backgroundUrl, QString otherAttrsJson, bool isDefault, bool useTransaction);
    /// Writes the given record over the row of network @p id. An empty @p name becomes "MoraSim".
    static bool updateNet(QSqlDatabase &db, long id, QString name, QString sourceUrl, QString sourceType,
                          QString backgroundUrl, double centerX, double centerY, QString caption,
                          QString otherAttrsJson, bool isDefault, bool useTransaction);

    static bool insertLink(QSqlDatabase &db, long netId, Link *link, bool inTransaction);
    static Link *selectLinkByID(QSqlDatabase &db, long netId, long linkId);
    static bool selectLinkIDs(QSqlDatabase &db, long netId, QList<long> &ids);

    static bool insertConnector(QSqlDatabase &db, long netId, Connector *connector, bool inTransaction);
    static bool insertConnectors(QSqlDatabase &db, long netId, QList<Connector *> &connectors,
                                 bool inTransaction);
    static Connector *selectConnectorByID(QSqlDatabase &db, long netId, long connectorId);
    static bool selectConnectorIDs(QSqlDatabase &db, long netId, QList<long> &ids);

    static bool selectLinkType(QSqlDatabase &db, long netId, QList<LinkType> &types);
    static bool insertGuideArrow(QSqlDatabase &db, long netId, GuideArrow *arrow, bool inTransaction);
    static GuideArrow *selectGuideArrowByID(QSqlDatabase &db, long netId, long id);
    static bool selectGuideArrowIDs(QSqlDatabase &db, long netId, QList<long> &ids);

private:
    static int mDbVer;
    static bool mbInter;
};
