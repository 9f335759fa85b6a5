#include "host/commands/Commands.h"
#include "model/AppVersionManager.h"
#include "tools/reports/Failure.h"

#include <QJsonDocument>

using namespace moratools;

namespace commands {

namespace {

QList<AppVersion> versionsSince(const QString &text) {
    const AppVersionManager &history = AppVersionManager::ofLibrary();
    if (text.isEmpty())
        return history.versions();
    const QVersionNumber number = AppVersionManager::numberOf(text);
    if (number.isNull())
        throw Failure(
            QStringLiteral("--since %1: this is no version; give a number such as 0.1.0").arg(text));
    return history.newerThan(number);
}

} // namespace

std::string versionText() {
    const AppVersion &newest = AppVersionManager::ofLibrary().newest();
    return QStringLiteral("morastore %1 (%2)")
        .arg(newest.number.toString(), newest.date.toString(Qt::ISODate))
        .toStdString();
}

void addChanges(CLI::App &program, Run &run) {
    struct Options {
        std::string since;
        bool json = false;
    };
    const auto options = std::make_shared<Options>();
    CLI::App *command = program.add_subcommand("changes", "Say what changed in which version, newest first.");
    command->add_option("--since", options->since, "Only versions newer than this one")->type_name("VERSION");
    command->add_flag("--json", options->json, "As a JSON array; otherwise Markdown");
    command->callback([options, &run] {
        run.work = [options] {
            const QList<AppVersion> versions = versionsSince(QString::fromStdString(options->since));
            if (options->json)
                printJson(QJsonDocument(AppVersionManager::toJson(versions)));
            else
                print(AppVersionManager::toMarkdown(versions));
        };
    });
}

} // namespace commands
