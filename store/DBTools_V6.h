#pragma once

#include "store/DBTools.h"

/// The operations for stores of generation 6, which hold several networks: those of StoreOperations without
/// the question for the version.
class MORASTORE_EXPORT DBTools_V6 : public StoreOperations<DBTools_V6> {
public:
    /// Opens an SQLite file for a backup copy on Qt's default connection (so it replaces the open one),
    /// without upgrading it or reading its version, and empties gNet's tables. A path that does not exist is
    /// refused and no file is made.
    /// @return validateDatabase() of the connection. The flag is not used.
    static bool openDatabaseForBackup(QSqlDatabase &db, QString path, bool);
    /// As DBTools::getIDByTableName(), in network @p netId.
    static bool getIDByTableName(QSqlDatabase &db, long netId, QString table, long &id);

    /// Writes a network record. An empty @p name becomes "MoraSim".
    /// @return false, with nothing written or recorded, when the id is taken already.
    static bool insertNet(QSqlDatabase &db, long id, QString name, QPointF center, QString sourceType,
                          QString backgroundUrl, QString otherAttrsJson, bool isDefault, bool useTransaction);
    /// Writes the given record over the row of network @p id. An empty @p name becomes "MoraSim".
    static bool updateNet(QSqlDatabase &db, long id, QString name, QString sourceUrl, QString sourceType,
                          QString backgroundUrl, double centerX, double centerY, QString caption,
                          QString otherAttrsJson, bool isDefault, bool useTransaction);

private:
    friend class StoreOperations<DBTools_V6>;
    /// @{ A store of generation 6, unasked.
    static Store storeOf(QSqlDatabase &db, long netId, const char *operation = __builtin_FUNCTION());
    static Store currentStoreOf(QSqlDatabase &db, const char *operation = __builtin_FUNCTION());
    static Store ownStore(QSqlDatabase &db, long netId, const char *operation = __builtin_FUNCTION());
    /// @}
    static QList<CallDbResult> &failuresOf(const QSqlDriver *driver);
};
