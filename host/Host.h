#pragma once

#include <MoraInterfaces/MoraInterfaces.h>

#include <QString>

/// What a program must do to be the library's host.
namespace host {

/// Settles what must be settled before the application object is made: no display, UTF-8 for names of files;
/// a limit on the size of files and a reader who leaves show as errors instead of ending the process; and
/// what goes to a standard stream that is closed goes nowhere else.
void prepareProcess();

/// For the life of this object the program is the library's host: it gives the key "__storekey" of the
/// configuration file (FileHelper::readConfigFile()) and the language, and decides whether the library's log
/// is shown.
class Session : private IMoraInterface {
public:
    /// `language` is a locale's name ("zh", "en_GB"); empty stands for the user's locale.
    Session(const QString &language, bool showLog);
    ~Session() override;

    QJsonObject jsonSettings() const override;

private:
    Q_DISABLE_COPY(Session)
};

} // namespace host
