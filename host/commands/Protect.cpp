#include "host/commands/Commands.h"
#include "store/DBTools.h"
#include "tools/reports/Failure.h"
#include "tools/session/Patience.h"
#include "tools/session/StoreAddress.h"

#include <QElapsedTimer>
#include <QThread>

using namespace moratools;

namespace commands {

namespace {

void changeFile(const std::string &given, bool (*change)(QString)) {
    const StoreAddress address(QString::fromStdString(given));
    if (address.isServer())
        throw Failure(QStringLiteral("%1: only a store file can be protected; on a server the access "
                                     "rights and its disk's encryption do that")
                          .arg(address.name()));
    constexpr int pause = 100; // milliseconds
    QElapsedTimer since;
    since.start();
    bool isToTell = true;
    while (!change(address.path())) {
        const CallDbResult failure = DBTools::mlCallDbResult.last();
        if (failure.kind != FailureKind::Busy || since.hasExpired(patience::most()))
            throw Failure(failure.error.trimmed());
        if (isToTell)
            patience::tellWaiting();
        isToTell = false;
        QThread::msleep(pause);
    }
}

// The library's calls by key protect what is not protected.

bool unprotectByKey1(QString path) {
    return DBTools::isFileEncrypted(path) ? DBTools::encryptDecryptFileByKey1(path)
                                          : DBTools::decryptFile(path);
}

bool unprotectByKey2(QString path) {
    return DBTools::isFileEncrypted(path) ? DBTools::encryptDecryptFileByKey2(path)
                                          : DBTools::decryptFile(path);
}

CLI::App *addCommand(CLI::App &program, const char *name, const char *description, std::string &path) {
    CLI::App *command = program.add_subcommand(name, description);
    command->add_option("FILE", path, "Path of the store")->required();
    return command;
}

} // namespace

void addProtect(CLI::App &program, Run &run) {
    const auto path = std::make_shared<std::string>();
    addCommand(program, "protect",
               "Encrypt a store file in place, with the key \"__storekey\" of the configuration file or else "
               "with the library's own, which keeps nobody out who has this program.",
               *path)
        ->callback([path, &run] { run.work = [path] { changeFile(*path, DBTools::encryptFile); }; });
}

void addUnprotect(CLI::App &program, Run &run) {
    const auto path = std::make_shared<std::string>();
    const auto libraryKey = std::make_shared<int>(0);
    CLI::App *command = addCommand(program, "unprotect", "Decrypt a protected store file in place.", *path);
    command
        ->add_option(
            "--library-key", *libraryKey,
            "The file was protected with this key of the library, 1 or 2, although the configuration "
            "file has a key of its own")
        ->check(CLI::Range(1, 2));
    command->callback([path, libraryKey, &run] {
        run.work = [path, libraryKey] {
            changeFile(*path, *libraryKey == 1   ? unprotectByKey1
                              : *libraryKey == 2 ? unprotectByKey2
                                                 : DBTools::decryptFile);
        };
    });
}

} // namespace commands
