// What the library adds to the statements of a single read: every link and connector of a store, read by id
// through the library and, in the same run, by the same statements through the engine's C interface, prepared
// each time and with every column of every row fetched.

#include "model/Connector.h"
#include "model/Link.h"
#include "model/Net.h"
#include "store/DBTools.h"

#include <QCoreApplication>
#include <QSqlDriver>
#include <QVariant>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <memory>
#include <sqlite3.h>
#include <string>
#include <vector>

namespace {

using Statements = std::vector<std::string>;

sqlite3 *engineOf(const QSqlDatabase &db) {
    return *static_cast<sqlite3 *const *>(db.driver()->handle().constData());
}

int keep(unsigned, void *statements, void *, void *text) {
    static_cast<Statements *>(statements)->emplace_back(static_cast<const char *>(text));
    return 0;
}

/// The statements that the engine executes during @p work.
Statements statementsOf(const std::function<void()> &work) {
    Statements statements;
    sqlite3_trace_v2(engineOf(gDB), SQLITE_TRACE_STMT, keep, &statements);
    work();
    sqlite3_trace_v2(engineOf(gDB), 0, nullptr, nullptr);
    return statements;
}

struct Bytes {
    long rows = 0;
    long bytes = 0;
};

void fetchColumn(sqlite3_stmt *row, int column, Bytes &fetched) {
    switch (sqlite3_column_type(row, column)) {
    case SQLITE_INTEGER:
        fetched.bytes += sqlite3_column_int64(row, column) != 0;
        break;
    case SQLITE_FLOAT:
        fetched.bytes += sqlite3_column_double(row, column) != 0;
        break;
    case SQLITE_NULL:
        break;
    default:
        fetched.bytes += sqlite3_column_blob(row, column) ? sqlite3_column_bytes(row, column) : 0;
    }
}

/// Executes @p statements on a connection of its own; without rows when one is refused.
Bytes runBare(sqlite3 *engine, const Statements &statements) {
    Bytes fetched;
    for (const std::string &text : statements) {
        sqlite3_stmt *row = nullptr;
        if (sqlite3_prepare_v2(engine, text.c_str(), int(text.size()), &row, nullptr) != SQLITE_OK)
            return {};
        while (sqlite3_step(row) == SQLITE_ROW) {
            ++fetched.rows;
            for (int column = 0; column < sqlite3_column_count(row); ++column)
                fetchColumn(row, column, fetched);
        }
        sqlite3_finalize(row);
    }
    return fetched;
}

double seconds(const std::function<void()> &work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double median(std::vector<double> times) {
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

using Links = std::vector<std::unique_ptr<Link>>;
using Connectors = std::vector<std::unique_ptr<Connector>>;

template <class Objects, class Read>
Objects readAll(const QList<long> &ids, Read read) {
    Objects objects;
    objects.reserve(std::size_t(ids.size()));
    for (const long id : ids)
        objects.emplace_back(read(gDB, gNet.netId, id));
    return objects;
}

/// Times both ways in turn, so that a disturbance of the machine meets both. @return whether the ratio of the
/// medians is within @p limit; without a limit, true.
bool compare(const char *name, int count, int runs, double limit, sqlite3 *engine,
             const std::function<void()> &clean, const std::function<void()> &read) {
    clean();
    const Statements statements = statementsOf(read);
    std::vector<double> library, bare;
    Bytes fetched;
    for (int run = 0; run < runs; ++run) {
        clean();
        library.push_back(seconds(read));
        bare.push_back(seconds([&] { fetched = runBare(engine, statements); }));
    }
    const double ratio = median(library) / median(bare);
    std::printf("%-22s %7d objects %8zu statements %8ld rows %7.2f us bare %7.2f us library  ratio %.2f",
                name, count, statements.size(), fetched.rows, 1e6 * median(bare) / count,
                1e6 * median(library) / count, ratio);
    if (limit > 0)
        std::printf(", limit %.1f", limit);
    std::printf("\n");
    std::fflush(stdout);
    return fetched.rows > 0 && (limit <= 0 || ratio <= limit);
}

} // namespace

int main(int argc, char **argv) {
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const int runs = arguments.value(2, QStringLiteral("7")).toInt();
    sqlite3 *engine = nullptr;
    QList<long> linkIds, connectorIds;
    if (arguments.size() < 2 || runs < 1 || !DBTools::openDatabase(gDB, arguments.at(1), true) ||
        !DBTools::selectNetIdByName(gDB, QString()) || !DBTools::selectLinkIDs(gDB, gNet.netId, linkIds) ||
        !DBTools::selectConnectorIDs(gDB, gNet.netId, connectorIds) || linkIds.isEmpty() ||
        sqlite3_open_v2(qUtf8Printable(arguments.at(1)), &engine, SQLITE_OPEN_READONLY, nullptr) !=
            SQLITE_OK) {
        std::fprintf(stderr, "usage: bench_single_reads STORE [RUNS], an SQLite store with a network\n");
        return 2;
    }
    Links links;
    Connectors connectors;
    const auto dropLinks = [&] { links.clear(); };
    const auto readLinks = [&] { links = readAll<Links>(linkIds, DBTools::selectLinkByID); };
    const auto dropConnectors = [&] { connectors.clear(); };
    const auto readConnectors = [&] {
        connectors = readAll<Connectors>(connectorIds, DBTools::selectConnectorByID);
    };
    constexpr double limit = 3;
    bool good = compare("selectLinkByID", linkIds.size(), runs, limit, engine, dropLinks, readLinks);
    if (!connectorIds.isEmpty())
        good = compare("selectConnectorByID", connectorIds.size(), runs, 0, engine, dropConnectors,
                       readConnectors) &&
               good;
    connectors.clear();
    links.clear();
    sqlite3_close(engine);
    gDB.close();
    return good ? 0 : 1;
}
