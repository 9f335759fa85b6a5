#pragma once

#include <QString>

/// A database of its own on the test server, which is dropped when the object goes. The server is named by
/// the environment: MORA_TEST_PG_HOST, _PORT, _NAME, _USER and _PASSWORD (scripts/with-postgres sets them).
class PostgresDatabase {
public:
    enum class Content {
        Nothing,
        Schema,    ///< the tables of an empty generation-6 store, by the SQL text
        Partitions ///< those of one whose networks are spread over three partitions
    };
    /// Where MORA_TEST_PARTITIONS is set, Schema is Partitions: suites that are written for a server's store
    /// run on one that is spread.
    explicit PostgresDatabase(Content content = Content::Schema);
    ~PostgresDatabase();
    PostgresDatabase(const PostgresDatabase &) = delete;
    PostgresDatabase &operator=(const PostgresDatabase &) = delete;

    /// Whether there is a test server. Without one a test that needs it skips itself.
    static bool hasServer();

    const QString &name() const { return mName; }
    /// What morastore takes; the password is not in it.
    QString connectionString() const;
    /// Makes it the database that DBTools::openDatabase() opens, until the object goes.
    void use() const;

    /// @{ What the environment says of the server.
    static QString host();
    static int port();
    static QString user();
    static QString password();
    /// @}

private:
    QString mName;
};
