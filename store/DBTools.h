#pragma once

#include "store/StoreOperations.h"

#include <QByteArray>
#include <QJsonObject>
#include <QPointF>

class QSqlDriver;

/// The connection of the process's store, which the host works on.
extern MORASTORE_EXPORT QSqlDatabase &gDB;
/// A second connection, opened by DBTools_V6::openDatabaseForBackup().
extern MORASTORE_EXPORT QSqlDatabase gDBForBackup;
/// Path of the process's store where it is an SQLite file; empty while none is open.
extern MORASTORE_EXPORT QString &gsDbPath;

/// The operations on a store, as a host calls them: the process's store is opened through this class, and
/// every operation serves it. Further stores are opened as a OpenStore.
///
/// Those that are declared here and not in StoreOperations run alike on stores of all generations, unless
/// they say otherwise.
class MORASTORE_EXPORT DBTools : public StoreOperations<DBTools> {
public:
    /// @name State of the process's store
    /// @{
    /// Whether Link of the open store has a column whose name contains "roadid". Hosts use the name as
    /// spelled.
    static bool &mbLinkHasRouadId;
    /// Network id to table name to the identifiers reserved and not yet used, ascending.
    static QHash<long, QHash<QString, QList<long>>> &mhId;
    /// Network id (0 in stores of one network) to table name to the highest identifier that this process has
    /// reserved or handed out.
    static QHash<long, QHash<QString, long>> &mhNetMaxId;

    /// Generation of the open store (2 before any was opened).
    static int dbVer();
    static void setDbVersion(int version);
    /// Whether the open store is an international one: its link types do not carry the Chinese names.
    static bool isInternational();
    /// @}

    /// @name Opening and checking
    /// @{
    /// Opens a store on @p db, which becomes Qt's default connection and replaces an earlier one.
    ///
    /// Takes the connection settings from gpMoraInterface's JSON settings ("__dbdriver", "__dbhost",
    /// "__dbname", "__dbuser", "__dbpassword"; the port is not read there), connects, reads the generation,
    /// upgrades an SQLite store to the current schema, finds out its language (SpecialWords::setDbIsEnglish())
    /// and whether links have road ids. Empties the identifier caches, both failure lists and, as soon as the
    /// earlier connection is given up, gNet's tables.
    /// @param path file of an SQLite store; not used with another driver. A path that does not exist is
    ///        refused and no file is made.
    /// @param resetIdCache empty the reserved identifiers once more after connecting.
    /// @return whether the store is open. On false the reason is in mlCallDbResult (but for an empty path),
    ///         and settings taken from the host stay changed.
    ///
    /// A store is tables and rows. One whose tables are more than that (triggers, views and what else would
    /// run with the operations), whose version does not fit its tables, or beside which lies a journal that
    /// would have the engine delete another file, is refused before anything is written.
    static bool openDatabase(QSqlDatabase &db, QString path, bool resetIdCache);
    /// Opens a store for reading, in all else as openDatabase() does: neither the file nor its folder
    /// changes, not even by the engine. Operations that write fail, with a record.
    ///
    /// An SQLite store that must be changed before it can be read (one of an older schema, also of the first
    /// generation; a journal or a log that a program left when it died) is read from a private copy, which
    /// goes with the connection. In a database of a server, transactions are read-only.
    static bool openDatabaseReadOnly(QSqlDatabase &db, QString path, bool resetIdCache);
    /// Switches @p db from an SQLite file to the PostgreSQL server that the host's JSON settings name
    /// ("__pgdbdriver", "__pgdbhost", "__pgdbport", "__pgdbname", "__pgdbuser", "__pgdbpassword") and deletes
    /// the objects of network 1 there. The port is kept in mDbPort but not applied to this connection: the
    /// driver's default counts.
    /// @return false when @p db is no SQLite connection or the server cannot be used. A removal that fails is
    ///         recorded and does not change the result.
    static bool transToPostgreSql(QSqlDatabase &db);
    /// Writes the failures of this class and then those of DBTools_V6, numbered through, as one text to the
    /// log named after the store file. Writes a heading alone without failures, and nothing when @p db is not
    /// open. The lists stay as they are.
    static void logError(QSqlDatabase &db);
    /// @{ Questions to the store. One that cannot be asked is a recorded failure beside its answer of 0 or
    /// false.
    /// The store's generation as table DbVersion has it; 0 when the table has no row or is missing.
    static long selectDbVersion(QSqlDatabase &db);
    /// Whether an SQLite store has @p table.
    static bool hasTable(QSqlDatabase &db, QString table);
    /// Whether @p table has a column whose name contains @p field, case-sensitively (SQLite). Always false on
    /// PostgreSQL for tables of an ordinary schema, and on other drivers.
    static bool tableHasField(QSqlDatabase &db, QString table, QString field);
    /// Whether @p sql executes and returns at least one row.
    static bool checkConstraint(QSqlDatabase &db, QString sql);
    /// Whether any column of the store carries the misspelling "Nnumber" of first-generation stores.
    static bool hasErrorFieldName(QSqlDatabase &db);
    /// Fills mlTableName and mhTablePK once per process; later calls do nothing.
    static void metadata(QSqlDatabase &db);
    /// A copy of mhTablePK.
    static QHash<QString, QString> tablePK();
    /// @}

    /// @name Schema
    /// @{
    /// Brings an SQLite store to the current schema; called by openDatabase(). Every step probes first and
    /// acts only when its table is missing, in one transaction; a failed statement is recorded and the
    /// upgrade goes on. Does nothing on a server.
    static void updateDatabase(QSqlDatabase &db);
    /// Brings a store of the first generation to the layout that updateDatabase() expects, with its rules for
    /// failures. The host calls it on an open store, then updateDatabase(); dbVer() follows what the store
    /// says afterwards. Does nothing on a store of several networks and on a server; a store that
    /// openDatabase() would refuse for its tables or its version is refused here, too, and recorded.
    static void updateDatabase1x(QSqlDatabase &db);
    /// @}

    /// @name Identifiers
    /// @{
    /// The next identifier for @p table, of the current network gNet in generation 6.
    ///
    /// SQLite counts in IDGenerater (generation 6: in blocks of 100 per network), never handing out what a
    /// row uses or what this process has had before, rolled back or not; PostgreSQL counts in sequences,
    /// which serve any number of processes. Lane connectors of older stores are counted in memory.
    /// @return false when the counter could not be read or moved, or there is no identifier left in 32 bits;
    /// @p id is then unchanged (0 in generation 6).
    static bool getIDByTableName(QSqlDatabase &db, QString table, long &id);
    /// A general-purpose identifier.
    static bool getID(QSqlDatabase &db, long &id);
    /// The id column of @p table; empty for a table that has none.
    static QString getIDName(QString table);
    /// The largest identifier in use in @p table (generation 6: of @p netId); 0 without one, for a table that
    /// has no id column, and beside a recorded failure. One beyond 32 bits is a recorded failure, too, and
    /// gives the largest that there can be.
    static long getMaxID(QSqlDatabase &db, long netId, QString table);
    /// Gives unused reserved identifiers of gNet back, so that later draws start with the first of them
    /// (SQLite; true at once elsewhere). The counters of all networks of a store are set alike. Where the
    /// commit of the own transaction fails the transaction stays open, for the caller to commit or roll back.
    static bool updateIds(QSqlDatabase &db, bool useTransaction);
    /// The largest primary-key value over all tables of @p schema ("public" when empty); PostgreSQL only,
    /// true at once elsewhere.
    static bool getMaxIdByAllTables(QSqlDatabase &db, long &maxId, QString schema);
    /// Moves the sequences past what the tables use, after data were copied into a PostgreSQL database; true
    /// at once elsewhere. Stops at the first failure.
    static bool initSequence(QSqlDatabase &db, QString schema);
    /// @}

    /// @name Networks
    /// @{
    /// Writes a network record into a store of one network; on a generation-6 store the row lacks a column
    /// and is refused. An empty @p name becomes "MoraSim".
    /// @return false, with nothing written or recorded, when the name is taken already.
    static bool insertNet(QSqlDatabase &db, long id, QString name, QPointF center, QString sourceType,
                          QString backgroundUrl, QJsonObject otherAttrs, bool useTransaction);
    /// @overload
    /// With the further attributes as JSON text.
    static bool insertNet(QSqlDatabase &db, long id, QString name, QPointF center, QString sourceType,
                          QString backgroundUrl, QString otherAttrsJson, bool useTransaction);
    /// @overload
    /// Writes the current network gNet.
    static bool insertNet(QSqlDatabase &db, bool useTransaction);
    /// Writes gNet's record over the row of network @p id. Below generation 6 does nothing and returns true.
    static bool updateNet(QSqlDatabase &db, long id, bool useTransaction);
    /// Loads a network record into gNet. @return &gNet (not the caller's), or null when there is no such row;
    /// gNet is then unchanged.
    static Net *selectNetById(QSqlDatabase &db, long id);
    /// Loads the first network of that name, or of the smallest id when @p name is empty, into gNet. @return
    /// as selectNetById().
    static Net *selectNetIdByName(QSqlDatabase &db, QString name);
    /// Whether the store has a network @p id.
    static bool selectNetId(QSqlDatabase &db, long id);
    /// The largest network id; 0 in an empty store.
    static long selectMaxNetId(QSqlDatabase &db);
    /// All networks by id, each with id, name and further attributes only.
    static QList<Net> selectNets(QSqlDatabase &db);
    /// The records of all networks by id. In a store of several networks without caption and further attributes,
    /// which may be as large as the file that a network came from.
    static QList<NetRecord> selectNetRecords(QSqlDatabase &db);
    /// Ids and names of all networks by id.
    static QList<QPair<long, QString>> selectNetNames(QSqlDatabase &db);
    /// The background image of the scene configuration; empty without one.
    static QByteArray selectBackgroundMap(QSqlDatabase &db, long netId);
    /// @}

    /// @name Links and lanes
    /// @{
    /// Writes links in order and stops at the first that fails.
    static bool insertLinks(QSqlDatabase &db, long netId, QList<Link *> &links, bool inTransaction);
    /// Whether the vertex belongs to the link, in whichever network.
    static bool checkLinkVertex(QSqlDatabase &db, long linkId, long vertexId);
    /// The points of a geometry object as text, x1,y1;x2,y2;..., six significant digits each, without
    /// heights.
    static QString breakPoints(QJsonObject geometry);
    /// @}

    /// @name Nodes, link types and guide arrows
    /// @{
    /// Whether the node stands on the vertex, in whichever network.
    static bool checkNodeVertex(QSqlDatabase &db, long nodeId, long vertexId);
    /// @}

    /// @name Protection of store files
    /// Whole files, in place, encrypted and authenticated; docs/protection.md says against whom each key
    /// protects. The file is replaced when the new one is complete, was read again and is on the disk: on
    /// false it is as it was, and the reason is in mlCallDbResult. A file that is open, that a program is
    /// writing to, or that is read-only is refused. A link stays a link, permissions stay. Time and disk
    /// space grow with the file, memory does not.
    ///
    /// The host's own key is the text "__storekey" of gpMoraInterface's JSON settings. While it is there, it
    /// is the preferred key; otherwise that is the library's first. While it is there, a file that was
    /// protected with a key of the library's is unprotected only by the call that names that key: everybody
    /// can make such a file, and it would pass as the host's.
    /// @{
    /// Protects @p path with the preferred key; a file that is protected already is refused.
    static bool encryptFile(QString path);
    /// Unprotects @p path with the key that the file names; a file that is not protected is refused.
    static bool decryptFile(QString path);
    /// decryptFile() for a file that is protected, encryptFile() for any other.
    static bool encryptDecryptFile(QString path);
    /// @{ As encryptDecryptFile(), with a key of the library's; a file that is protected with another key is
    /// refused.
    static bool encryptDecryptFileByKey1(QString path);
    static bool encryptDecryptFileByKey2(QString path);
    /// Whether the file starts as a protected one does; false when it cannot be read.
    static bool isFileEncrypted(QString path);
    /// @}

private:
    friend class StoreOperations<DBTools>;
    friend class StoredNet;
    /// @{ The store as its version has it, on a network or on the current one. Where the version cannot be
    /// read nothing of the operation runs. Failures are recorded under the name of the function that calls.
    static Store storeOf(QSqlDatabase &db, long netId, const char *operation = __builtin_FUNCTION());
    static Store currentStoreOf(QSqlDatabase &db, const char *operation = __builtin_FUNCTION());
    /// @}
    /// A store of one network, whatever its version says: for the operations that never forward.
    static Store ownStore(QSqlDatabase &db, long netId, const char *operation = __builtin_FUNCTION());
    static QList<CallDbResult> &failuresOf(const QSqlDriver *driver);
};
