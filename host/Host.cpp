#include "host/Host.h"

#include "model/SpecialWords.h"

#include <MoraSupport/FileHelper.h>

#include <QLocale>
#include <QLoggingCategory>
#include <QTextCodec>

#include <csignal>

namespace host {

namespace {

QtMessageHandler defaultHandler = nullptr;

/// Drops what is none of the user's concern. Without a display there is no session and no folder for it. What
/// Qt's drivers say besides of a statement that failed or a server that is gone has a sentence of its own.
void dropAsides(QtMsgType type, const QMessageLogContext &context, const QString &text) {
    for (const char *beginning :
         {"QStandardPaths: XDG_RUNTIME_DIR not set", "Unable to free statement", "QSqlQuery::"}) {
        if (text.startsWith(QLatin1String(beginning)))
            return;
    }
    defaultHandler(type, context, text);
}

} // namespace

void prepareProcess() {
    defaultHandler = qInstallMessageHandler(dropAsides);
    qputenv("QT_QPA_PLATFORM", "offscreen");
#ifdef Q_OS_UNIX
    // Names of files are bytes, and SQLite takes them for UTF-8 whatever the locale says.
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
#endif
#ifdef SIGXFSZ
    std::signal(SIGXFSZ, SIG_IGN);
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
