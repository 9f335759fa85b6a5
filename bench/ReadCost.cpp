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
#include <cstdio>
#include <iostream>
#include <map>
#include <memory>
#include <numeric>
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

Stores &stores() {
    static Stores instance;
    return instance;
}

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

void readLinks(benchmark::State &state) {
    const long size = state.range(0);
    if (!stores().open(size))
        state.SkipWithError("the store cannot be opened");
    while (state.KeepRunning()) {
        gNet.releaseNet();
        timeReads(state, randomIds(size), readLink);
    }
}

void readConnectors(benchmark::State &state) {
    const long size = state.range(0);
    if (!stores().open(size))
        state.SkipWithError("the store cannot be opened");
    while (state.KeepRunning()) {
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

void everySize(benchmark::internal::Benchmark *registered) {
    registered->UseManualTime()->Unit(benchmark::kMicrosecond)->Iterations(1)->Repetitions(7);
    for (const long size : kSizes)
        registered->Arg(size);
}

BENCHMARK(readLinks)->Name("selectLinkByID")->Apply(everySize);
BENCHMARK(readConnectors)->Name("selectConnectorByID")->Apply(everySize);

/// Collects the aggregates of the repetitions: a batch counts as one iteration, so the usual table would
/// mislead.
class Report : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(const Context &) override { return true; }

    void ReportRuns(const std::vector<Run> &runs) override {
        for (const Run &run : runs) {
            if (run.error_occurred) {
                std::cerr << run.benchmark_name() << ": " << run.error_message << '\n';
                mComplete = false;
            }
            Cost &cost = mCosts[run.run_name.function_name][std::stol(run.run_name.args)];
            if (run.aggregate_name == "median")
                cost.median = run.GetAdjustedRealTime();
            else if (run.aggregate_name == "cv")
                cost.variation = run.real_accumulated_time;
        }
    }

    /// Prints times and ratios. @return whether all ratios are within the limit and nothing failed.
    bool judge() const {
        bool good = mComplete && !mCosts.empty();
        for (const auto &[name, bySize] : mCosts) {
            std::printf("%s\n", name.c_str());
            const double base = bySize.begin()->second.median;
            double least = base;
            double most = base;
            for (const auto &[size, cost] : bySize) {
                std::printf("  %6ld links %8.1f us a read (varies by %2.0f %%), ratio %.2f\n", size,
                            cost.median, 100 * cost.variation, cost.median / base);
                least = std::min(least, cost.median);
                most = std::max(most, cost.median);
            }
            std::printf("  largest to smallest %.2f, limit %.2f\n", most / least, kLimit);
            good = good && bySize.size() == std::size(kSizes) && least > 0 && most / least <= kLimit;
        }
        return good;
    }

private:
    struct Cost {
        double median = 0;    ///< microseconds
        double variation = 0; ///< standard deviation to mean
    };

    bool mComplete = true;
    std::map<std::string, std::map<long, Cost>> mCosts;
};

} // namespace

int main(int argc, char *argv[]) {
    const QCoreApplication app(argc, argv);
    // Repetitions of all sizes take turns, so that a disturbance of the machine meets all of them.
    std::vector<char *> arguments(argv, argv + argc);
    char interleave[] = "--benchmark_enable_random_interleaving=true";
    arguments.insert(arguments.begin() + 1, interleave);
    int count = int(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data()))
        return 2;

    if (!stores().makeAll())
        return 1;
    Report report;
    benchmark::RunSpecifiedBenchmarks(&report);
    const bool good = report.judge();
    gDB.close();
    return good ? 0 : 1;
}
