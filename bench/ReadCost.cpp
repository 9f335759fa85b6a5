// Whether reading one object costs the same whatever the size of its network: random links and connectors,
// read by id from stores of several sizes. Prints the times and their ratios; exits with 1 when the largest
// and the smallest differ by more than kLimit.

#include "SyntheticStore.h"

#include "model/Connector.h"
#include "model/Link.h"
#include "model/Net.h"
#include "store/DBTools.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <iostream>
#include <map>
#include <memory>
#include <random>
#include <vector>

namespace {

constexpr int kReads = 2000;
constexpr long kSizes[] = {5000, 20000, 80000};
constexpr double kLimit = 1.3;

class Stores {
public:
    bool makeAll() {
        for (const long size : kSizes) {
            std::cerr << "Making a store of " << size << " links\n";
            if (!syntheticstore::make(path(size), size)) {
                DBTools::logError(gDB);
                return false;
            }
        }
        return true;
    }

    bool open(long size) {
        return DBTools::openDatabase(gDB, path(size), true) &&
               DBTools::selectNetById(gDB, syntheticstore::kNet);
    }

private:
    QString path(long size) const { return mFolder.filePath(QStringLiteral("%1.db").arg(size)); }

    QTemporaryDir mFolder;
};

std::unique_ptr<Link> readLink(long id) {
    return std::unique_ptr<Link>(DBTools::selectLinkByID(gDB, syntheticstore::kNet, id));
}

/// Different ids from 1 to @p largest, in random order: every read of a batch finds nothing in gNet.
std::vector<long> randomIds(long largest) {
    static std::mt19937 generator(20230202);
    std::vector<long> ids(static_cast<size_t>(largest));
    std::iota(ids.begin(), ids.end(), 1L);
    for (size_t i = 0; i < kReads; ++i)
        std::swap(ids[i], ids[std::uniform_int_distribution<size_t>(i, ids.size() - 1)(generator)]);
    ids.resize(kReads);
    return ids;
}

/// Reads every id with @p read, which gives an owning pointer, and reports the time of one read. The objects
/// are kept until the clock has stopped.
template <class Read>
void timeReads(benchmark::State &state, const std::vector<long> &ids, Read read) {
    std::vector<decltype(read(0))> objects;
    objects.reserve(ids.size());
    const auto start = std::chrono::steady_clock::now();
    for (const long id : ids)
        objects.push_back(read(id));
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
    state.SetIterationTime(elapsed.count() / double(ids.size()));
    for (const auto &object : objects) {
        if (!object)
            state.SkipWithError("an object was not read");
    }
}

void readLinks(benchmark::State &state, Stores &stores) {
    const long size = state.range(0);
    if (!stores.open(size))
        state.SkipWithError("the store cannot be opened");
    for (auto _ : state) {
        gNet.releaseNet();
        timeReads(state, randomIds(size), readLink);
    }
}

void readConnectors(benchmark::State &state, Stores &stores) {
    const long size = state.range(0);
    if (!stores.open(size))
        state.SkipWithError("the store cannot be opened");
    for (auto _ : state) {
        gNet.releaseNet();
        const std::vector<long> ids = randomIds(size - 1);
        // A connector is read onto the links that gNet knows.
        std::vector<std::unique_ptr<Link>> links;
        for (const long id : ids) {
            for (const long linkId : {id, id + 1}) {
                if (!gNet.getLinkById(linkId))
                    links.push_back(readLink(linkId));
            }
        }
        timeReads(state, ids, [](long id) {
            return std::unique_ptr<Connector>(DBTools::selectConnectorByID(gDB, syntheticstore::kNet, id));
        });
    }
}

/// Keeps the median of each benchmark, besides printing as usual.
class Medians : public benchmark::ConsoleReporter {
public:
    Medians() : ConsoleReporter(OO_Tabular) {}

    void ReportRuns(const std::vector<Run> &runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run &run : runs) {
            if (run.error_occurred)
                mComplete = false;
            else if (run.aggregate_name == "median")
                mSeconds[run.run_name.function_name][std::stol(run.run_name.args)] =
                    run.real_accumulated_time;
        }
    }

    /// Prints the ratios. @return whether all are within the limit and nothing failed.
    bool judge() const {
        bool good = mComplete && !mSeconds.empty();
        for (const auto &[name, bySize] : mSeconds) {
            const auto [least, most] =
                std::minmax_element(bySize.begin(), bySize.end(),
                                    [](const auto &a, const auto &b) { return a.second < b.second; });
            std::cout << name << ", times as long as from the smallest store:";
            for (const auto &[size, seconds] : bySize)
                std::cout << "  " << size << ": " << seconds / bySize.begin()->second;
            const double ratio = most->second / least->second;
            std::cout << "; largest to smallest " << ratio << " (limit " << kLimit << ")\n";
            good = good && bySize.size() == std::size(kSizes) && ratio <= kLimit;
        }
        return good;
    }

private:
    bool mComplete = true;
    std::map<std::string, std::map<long, double>> mSeconds;
};

} // namespace

int main(int argc, char *argv[]) {
    const QCoreApplication app(argc, argv);
    // Repetitions of all sizes take turns, so that a disturbance of the machine meets all of them.
    std::vector<char *> arguments(argv, argv + argc);
    char interleave[] = "--benchmark_enable_random_interleaving=true";
    char aggregates[] = "--benchmark_display_aggregates_only=true";
    arguments.insert(arguments.begin() + 1, {interleave, aggregates});
    int count = int(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data()))
        return 2;

    Stores stores;
    if (!stores.makeAll())
        return 1;
    for (const auto &[name, body] :
         {std::pair{"selectLinkByID", readLinks}, {"selectConnectorByID", readConnectors}}) {
        auto *registered = benchmark::RegisterBenchmark(
            name, [&stores, body = body](benchmark::State &state) { body(state, stores); });
        registered->UseManualTime()->Unit(benchmark::kMicrosecond)->Iterations(1)->Repetitions(7);
        for (const long size : kSizes)
            registered->Arg(size);
    }
    Medians medians;
    benchmark::RunSpecifiedBenchmarks(&medians);
    const bool good = medians.judge();
    gDB.close();
    return good ? 0 : 1;
}
