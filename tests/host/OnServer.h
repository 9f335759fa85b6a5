#pragma once

#include "tests/host/Morastore.h"
#include "tests/support/PostgresDatabase.h"

/// The program on stores of the tests' server; skipped where there is none.
class OnServer : public Morastore {
protected:
    void SetUp() override {
        if (!PostgresDatabase::hasServer())
            GTEST_SKIP() << "no PostgreSQL server";
        qputenv("PGPASSWORD", PostgresDatabase::password().toUtf8());
    }
};
