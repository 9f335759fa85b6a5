#include "host/Host.h"

#include "host/Printable.h"
#include "model/SpecialWords.h"

#include <MoraSupport/FileHelper.h>

#include <QLocale>
#include <QLoggingCategory>
#include <QTextCodec>

#include <csignal>

#ifdef Q_OS_UNIX
#include <fcntl.h>
#include <unistd.h>
#endif

namespace host {

namespace {

QtMessageHandler defaultHandler = nullptr;

/// Drops what Qt's drivers say besides, in whatever words and language: of a statement that failed or a server that is
/// gone a sentence of our own tells. What we log has a category.
void dropAsides(QtMsgType type, const QMessageLogContext &context, const QString &text) {
    if (type == QtWarningMsg && qstrcmp(context.category, "default") == 0)
        return;
    defaultHandler(type, context, printable::lines(text));
}

/// A program that is started without stdin, stdout or stderr gives their numbers to the next files that it
/// opens: what it says would go into a store or a picture. What stands in their place takes nothing, so that
/// output that goes nowhere shows as an error.
void occupyStandardStreams() {
#ifdef Q_OS_UNIX
    int file = 0;
    while (file >= 0 && file <= STDERR_FILENO)
        file = open("/dev/null", O_RDONLY); // NOLINT(cppcoreguidelines-pro-type-vararg)
    if (file >= 0)
        close(file);
#endif
}

} // namespace

void prepareProcess() {
    occupyStandardStreams();
    defaultHandler = qInstallMessageHandler(dropAsides);
    qputenv("QT_QPA_PLATFORM", "offscreen");
#ifdef Q_OS_UNIX
    // Names of files are bytes, and SQLite takes them for UTF-8 whatever the locale says.
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
#endif
#ifdef SIGXFSZ
    std::signal(SIGXFSZ, SIG_IGN);
#endif
#ifdef SIGPIPE
    std::signal(SIGPIPE, SIG_IGN);
#endif
}

Session::Session(const QString &language, bool showLog) {
    const QLocale locale = language.isEmpty() ? QLocale::system() : QLocale(language);
    gSpecialWords.setLangIsNotZh(locale.language() != QLocale::Chinese);
    gSpecialWords.initVars();
    gpMoraInterface = this;
    // A failure's sentence says what the log would: the log is for those who ask.
    if (!showLog)
        QLoggingCategory::setFilterRules(QStringLiteral("MoraStore.*=false"));
}

Session::~Session() {
    gpMoraInterface = nullptr;
}

QJsonObject Session::jsonSettings() const {
    QJsonObject settings;
    const QString key = QStringLiteral("__storekey");
    const QJsonObject file = FileHelper::readConfigFile();
    if (file.contains(key))
        settings.insert(key, file.value(key));
    return settings;
}

} // namespace host
