#pragma once

#include "store/DBTools.h"
#include "store/DBTools_V6.h"
#include "tests/support/PostgresDatabase.h"

#include <QSqlDatabase>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <memory>
#include <ostream>

/// A kind of store that a family's suite runs on.
struct StoreKind {
    const char *name;         ///< Shows in the test's name.
    const char *templateName; ///< Template that the store file is made from; null on the PostgreSQL server.
    bool hasSeveralNets;
    bool isPostgres() const { return !templateName; }

    friend std::ostream &operator<<(std::ostream &out, const StoreKind &kind) { return out << kind.name; }
};

/// The kinds for INSTANTIATE_TEST_SUITE_P(..., testing::ValuesIn(kStoreKinds), storeKindName).
extern const StoreKind kStoreKinds[3];
/// Those of them that are files.
extern const StoreKind kFileKinds[2];
std::string storeKindName(const testing::TestParamInfo<StoreKind> &info);

/// A store of its own for each case, open on gDB, made from a template that the library carries.
class StoreFixture : public testing::Test {
public:
    ~StoreFixture() override;

protected:
    /// Copies a template to a file and opens it; network 1 exists and is the current one. Failures of the
    /// opening itself are not kept.
    void openTemplate(const char *templateName);
    /// The same with a database of its own on the test server; skips the case where there is none.
    void openPostgres();
    /// Drops what memory holds of the store (gNet's tables, registries) and opens it again; network 1
    /// is loaded where the store has one.
    void reopen();
    /// Path of the store file.
    QString path() const;
    QString folder() const { return mFolder.path(); }

    /// Executes a statement of the test's own; a failure fails the test.
    void execute(const QString &sql);
    /// The rows that a statement returns, each with its values as text joined by "|" (NULL as "NULL").
    QStringList rows(const QString &sql);
    int count(const QString &table);
    /// Lets rows refer to rows that are not there, as SQLite does unless it is asked not to: takes the
    /// foreign keys of a database away.
    void letReferencesDangle();
    /// Makes the engine refuse an event ("insert", "delete") on the rows of a table, with the text "refused".
    void refuse(const QString &event, const QString &table);
    /// Ends that.
    void letPass(const QString &table);
    void dropTable(const QString &table);

    /// Failures recorded in both classes since the last opening.
    static int failureCount() { return DBTools::mlCallDbResult.size() + DBTools_V6::mlCallDbResult.size(); }
    static void clearFailures();

    /// The network that the tests work in.
    static constexpr long kNet = 1;

private:
    void openAndAddNet();

    QTemporaryDir mFolder;
    std::unique_ptr<PostgresDatabase> mDatabase;
};

/// StoreFixture opened on the template of the parameter.
class StoreKindFixture : public StoreFixture, public testing::WithParamInterface<StoreKind> {
protected:
    void SetUp() final {
        openNewStore();
        if (!IsSkipped() && !HasFatalFailure())
            prepare();
    }
    /// A new store of the parameter's kind, in place of the one that is open.
    void openNewStore() { isPostgres() ? openPostgres() : openTemplate(GetParam().templateName); }
    /// What the cases of a suite start with, in the open store.
    virtual void prepare() {}
    bool isPostgres() const { return GetParam().isPostgres(); }
    bool hasSeveralNets() const { return GetParam().hasSeveralNets; }
    /// Writes a row of network 1 by a statement of the test's own.
    void addRow(const QString &table, const QString &columns, const QString &values) {
        const QString led = hasSeveralNets() ? QStringLiteral("insert into %1(NetId, %2) values(1, %3)")
                                             : QStringLiteral("insert into %1(%2) values(%3)");
        execute(led.arg(table, columns, values));
    }
    /// The list that failures of this generation go to.
    QList<CallDbResult> &failures() const {
        return hasSeveralNets() ? DBTools_V6::mlCallDbResult : DBTools::mlCallDbResult;
    }
};
