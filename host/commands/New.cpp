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

    QString nameOr(const QString &usual) const { return name.empty() ? usual : QString::fromStdString(name); }
};

void make(const Options &options) {
    if (!options.database.empty()) {
        makeDatabaseStore(QString::fromStdString(options.database),
                          options.nameOr(databaseTemplateNames().first()));
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
    place
        ->add_option("--postgres", options->database,
                     "Connection string of an empty database, or of one to be made: \"dbname=... host=...\"")
        ->type_name("CONNECTION");
    place->require_option(1);
    command
        ->add_option("--template", options->name,
                     QStringLiteral("Template of a file: %1 (default %2); of a database: %3 (default %4)")
                         .arg(templateNames().join(QStringLiteral(", ")), newestTemplate(),
                              databaseTemplateNames().join(QStringLiteral(", ")),
                              databaseTemplateNames().first())
                         .toStdString())
        ->type_name("NAME");
    command->callback([options, &run] { run.work = [options] { make(*options); }; });
}

} // namespace commands
