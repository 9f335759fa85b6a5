#include "tools/session/Placement.h"

#include "host/Printable.h"
#include "host/commands/Commands.h"

using namespace moratools;

namespace commands {

namespace {

struct Options {
    std::string store;
    std::string server;
    int partition = -1;
    std::string net;
    bool back = false;
    bool mayEmpty = false;
    bool tidy = false;

    bool isMove() const { return back || !server.empty(); }
};

QString lineOf(const Partition &partition) {
    const QString place = partition.server.isEmpty()
                              ? QStringLiteral("here")
                              : QStringLiteral("on server %1").arg(printable::line(partition.server));
    return QStringLiteral("partition %1 is %2, with %3 networks")
        .arg(QString::number(partition.number), place, QString::number(partition.networks.size()));
}

void list(const StoreAddress &store) {
    const QList<Partition> partitions = partitionsOf(store);
    for (const Partition &partition : partitions) {
        print(lineOf(partition) + QLatin1Char('\n'));
        for (const QString &network : partition.networks)
            print(QStringLiteral("  %1\n").arg(printable::line(network)));
    }
}

void place(const Options &options) {
    const StoreAddress store(QString::fromStdString(options.store));
    if (!store.isServer())
        throw Failure(QStringLiteral("%1: only a store on a server has partitions").arg(store.name()));
    if (options.tidy) {
        const QString removed = QString::number(tidyPartitions(store));
        print(QStringLiteral("%1 rows that belonged to no network are gone\n").arg(removed),
              QStringLiteral("rows of no network are gone"));
        return;
    }
    if (!options.isMove()) {
        list(store);
        return;
    }
    const int partition =
        options.partition >= 0 ? options.partition : partitionOf(store, QString::fromStdString(options.net));
    placePartition(store, partition, options.back ? QString() : QString::fromStdString(options.server),
                   options.mayEmpty);
    const QString done = lineOf(partitionsOf(store).at(partition));
    print(done + QLatin1Char('\n'), done);
}

} // namespace

void addPlace(CLI::App &program, Run &run) {
    const auto options = std::make_shared<Options>();
    CLI::App *command = program.add_subcommand(
        "place",
        "Move a partition of a store with all its networks to another PostgreSQL server and back; without a "
        "server, list the partitions.");
    command->add_option("STORE", options->store, "Store: connection string of a PostgreSQL database")
        ->required();
    CLI::Option *server =
        command->add_option("SERVER", options->server,
                            "Name of a foreign server of the database (\"create server\" of postgres_fdw)");
    CLI::Option *partition =
        command->add_option("--partition", options->partition, "Number of the partition")->type_name("N");
    CLI::Option *net =
        command
            ->add_option("--net", options->net,
                         "Its partition is meant, with all networks in it: number or name of a "
                         "network; a number goes first")
            ->type_name("NET")
            ->excludes(partition);
    CLI::Option *back = command->add_flag("--back", options->back, "Move it back to the store's own server")
                            ->excludes(server);
    CLI::Option *empty =
        command
            ->add_flag("--empty", options->mayEmpty,
                       "Empty the partition's tables on SERVER first, where an earlier move left rows")
            ->needs(server);
    command
        ->add_flag("--tidy", options->tidy,
                   "Remove rows on other servers that belong to no network: what is left of a "
                   "command whose commit came through there and not here")
        ->excludes(server)
        ->excludes(back)
        ->excludes(empty)
        ->excludes(net)
        ->excludes(partition);
    command->callback([options, &run] {
        const bool isNamed = options->partition >= 0 || !options->net.empty();
        if (options->isMove() != isNamed)
            throw CLI::ValidationError("give SERVER or --back with --partition or --net");
        run.work = [options] { place(*options); };
    });
}

} // namespace commands
