#include "BareEngine.h"

#include <cstdio>
#include <cstdlib>
#include <sqlite3.h>

namespace {

void require(sqlite3 *engine, bool good) {
    if (good)
        return;
    std::fprintf(stderr, "SQLite: %s\n", sqlite3_errmsg(engine));
    std::exit(1);
}

class Statement {
public:
    Statement(sqlite3 *engine, const QByteArray &sql) : mEngine(engine) {
        require(engine, sqlite3_prepare_v2(engine, sql.constData(), -1, &mStatement, nullptr) == SQLITE_OK);
    }
    ~Statement() { sqlite3_finalize(mStatement); }
    Statement(const Statement &) = delete;
    Statement &operator=(const Statement &) = delete;

    bool step() {
        const int result = sqlite3_step(mStatement);
        require(mEngine, result == SQLITE_ROW || result == SQLITE_DONE);
        return result == SQLITE_ROW;
    }
    sqlite3_stmt *get() const { return mStatement; }

private:
    sqlite3 *mEngine;
    sqlite3_stmt *mStatement = nullptr;
};

BareEngine::Value valueOf(sqlite3_stmt *row, int column) {
    const int type = sqlite3_column_type(row, column);
    switch (type) {
    case SQLITE_NULL:
        return std::monostate();
    case SQLITE_INTEGER:
        return static_cast<long long>(sqlite3_column_int64(row, column));
    case SQLITE_FLOAT:
        return sqlite3_column_double(row, column);
    default:
        const auto *bytes = static_cast<const char *>(sqlite3_column_blob(row, column));
        return std::pair(type == SQLITE_TEXT, QByteArray(bytes, sqlite3_column_bytes(row, column)));
    }
}

void bind(sqlite3_stmt *row, int place, const BareEngine::Value &value) {
    if (const auto *whole = std::get_if<long long>(&value)) {
        sqlite3_bind_int64(row, place, *whole);
    } else if (const auto *number = std::get_if<double>(&value)) {
        sqlite3_bind_double(row, place, *number);
    } else if (const auto *bytes = std::get_if<std::pair<bool, QByteArray>>(&value)) {
        const auto &[isText, data] = *bytes;
        if (isText)
            sqlite3_bind_text(row, place, data.constData(), data.size(), SQLITE_STATIC);
        else
            sqlite3_bind_blob(row, place, data.constData(), data.size(), SQLITE_STATIC);
    } else {
        sqlite3_bind_null(row, place);
    }
}

} // namespace

BareEngine::BareEngine(const QString &path) {
    require(mEngine, sqlite3_open_v2(path.toUtf8().constData(), &mEngine, SQLITE_OPEN_READWRITE, nullptr) ==
                         SQLITE_OK);
}

BareEngine::~BareEngine() {
    sqlite3_close(mEngine);
}

std::vector<QByteArray> BareEngine::tables() {
    std::vector<QByteArray> filled;
    Statement names(mEngine, "select name from sqlite_master where type = 'table'");
    while (names.step()) {
        const QByteArray name(reinterpret_cast<const char *>(sqlite3_column_text(names.get(), 0)));
        if (Statement(mEngine, "select 1 from \"" + name + "\" limit 1").step())
            filled.push_back(name);
    }
    return filled;
}

long long BareEngine::scan(const std::vector<QByteArray> &tables) {
    long long rows = 0;
    for (const QByteArray &table : tables) {
        Statement all(mEngine, "select * from \"" + table + '"');
        sqlite3_stmt *row = all.get();
        const int columns = sqlite3_column_count(row);
        for (; all.step(); ++rows) {
            for (int i = 0; i < columns; ++i) {
                switch (sqlite3_column_type(row, i)) {
                case SQLITE_INTEGER:
                    mSum += double(sqlite3_column_int64(row, i));
                    break;
                case SQLITE_FLOAT:
                    mSum += sqlite3_column_double(row, i);
                    break;
                case SQLITE_NULL:
                    break;
                default:
                    const auto *bytes = static_cast<const char *>(sqlite3_column_blob(row, i));
                    const int size = sqlite3_column_bytes(row, i);
                    mSum += size > 0 ? bytes[size - 1] : 0;
                }
            }
        }
    }
    return rows;
}

std::vector<BareEngine::Table> BareEngine::read(const std::vector<QByteArray> &tables) {
    std::vector<Table> read;
    for (const QByteArray &name : tables) {
        Statement all(mEngine, "select * from \"" + name + '"');
        Table table{name, sqlite3_column_count(all.get()), {}};
        while (all.step()) {
            for (int i = 0; i < table.columns; ++i)
                table.values.push_back(valueOf(all.get(), i));
        }
        read.push_back(std::move(table));
    }
    return read;
}

void BareEngine::insert(const std::vector<Table> &tables) {
    execute("begin");
    for (const Table &table : tables) {
        QByteArray places("?");
        for (int i = 1; i < table.columns; ++i)
            places += ",?";
        Statement insert(mEngine, "insert into \"" + table.name + "\" values(" + places + ')');
        for (std::size_t at = 0; at < table.values.size();) {
            for (int i = 1; i <= table.columns; ++i)
                bind(insert.get(), i, table.values[at++]);
            insert.step();
            sqlite3_reset(insert.get());
        }
    }
    execute("commit");
}

void BareEngine::execute(const QByteArray &sql) {
    require(mEngine, sqlite3_exec(mEngine, sql.constData(), nullptr, nullptr, nullptr) == SQLITE_OK);
}

void BareEngine::update(const QByteArray &sql, const std::vector<std::pair<double, long long>> &values) {
    execute("begin");
    Statement update(mEngine, sql);
    for (const auto &[value, id] : values) {
        sqlite3_bind_double(update.get(), 1, value);
        sqlite3_bind_int64(update.get(), 2, id);
        update.step();
        sqlite3_reset(update.get());
    }
    execute("commit");
}
