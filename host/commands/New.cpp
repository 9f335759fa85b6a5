#include "host/commands/Commands.h"
#include "tools/reports/Failure.h"
#include "tools/session/NewDatabase.h"
#include "tools/session/NewStore.h"

using namespace moratools;

namespace commands {

namespace {

struct Options {
    std::string store;
    std::string database;
    std::string name;
    int partitions = 0;
    int leaves = 0;

    QString nameOr(const QString &usual) const { return name.empty() ? usual : QString::fromStdString(name); }
};

void makeDatabase(const Options &options) {
    const StoreAddress address(QString::fromStdString(options.database));
    if (options.partitions > 0)
        makePartitionedStore(address, options.partitions);
    else if (options.leaves > 0)
        makePlaceForPartitions(address, options.leaves);
    else
        makeDatabaseStore(address, options.nameOr(databaseTemplateNames().first()));
}

void make(const Options &options) {
    if (!options.database.empty()) {
        makeDatabase(options);
        return;
    }
    const StoreAddress address(QString::fromStdString(options.store));
    if (address.isServer())
        throw Failure(QStringLiteral("%1: to make a store on a server say \"new --postgres\" and the "
                                     "connection string")
                          .arg(address.name()));
    makeStore(address.path(), options.nameOr(newestTemplate()));
}

} // namespace

void addNew(CLI::App &program, Run &run) {
    const auto options = std::make_shared<Options>();
    CLI::App *command = program.add_subcommand(
        "new", "Make an empty store: a file from a template, or on a PostgreSQL server. An existing file is "
               "never touched, nor a database that holds tables.");
    CLI::Option_group *place = command->add_option_group("Place");
    place->add_option("STORE", options->store, "Path of the new store");
    CLI::Option *database =
        place
            ->add_option(
                "--postgres", options->database,
                "Connection string of an empty database, or of one to be made: \"dbname=... host=...\"")
            ->type_name("CONNECTION");
    place->require_option(1);
    CLI::Option *name =
        command
            ->add_option("--template", options->name,
                         QStringLiteral("Template of a file: %1 (default %2); of a database: %3 (default %4)")
                             .arg(templateNames().join(QStringLiteral(", ")), newestTemplate(),
                                  databaseTemplateNames().join(QStringLiteral(", ")),
                                  databaseTemplateNames().first())
                             .toStdString())
            ->type_name("NAME");
    CLI::Option *partitions =
        command
            ->add_option(
                "--partitions", options->partitions,
                "Spread the networks of the database over N partitions, which \"morastore place\" puts on "
                "other servers")
            ->type_name("N");
    CLI::Option *leaves = command
                              ->add_option("--leaves", options->leaves,
                                           "Make no store, but the tables that partitions of another "
                                           "database's store, which has N of them, are placed in")
                              ->type_name("N");
    for (CLI::Option *spread : {partitions, leaves})
        spread->needs(database)->excludes(name)->check(CLI::Range(1, kMostPartitions));
    partitions->excludes(leaves);
    command->callback([options, &run] { run.work = [options] { make(*options); }; });
}

} // namespace commands
