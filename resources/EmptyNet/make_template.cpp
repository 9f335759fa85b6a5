#include "Statements.h"

#include <QCoreApplication>
#include <QFile>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QStringList>
#include <QTextStream>

#include <stdexcept>

/// Makes a template store: runs the statements of SQL files, in order, in a new SQLite file.
///
/// Usage: make_template STORE FILE.sql...
///
/// A refused statement ends the run with the file, the line and the engine's words, and leaves no store.

namespace {

void run(QSqlQuery &query, const QString &statement, const QString &where) {
    if (!query.exec(statement))
        throw std::runtime_error(
            qPrintable(QStringLiteral("%1: %2\n%3").arg(where, query.lastError().text(), statement)));
}

void makeStore(const QString &store, const QStringList &files) {
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("template"));
    db.setDatabaseName(store);
    if (!db.open())
        throw std::runtime_error(qPrintable(store + QStringLiteral(": ") + db.lastError().text()));
    QSqlQuery query(db);
    // Set rather than assumed: an engine may be built with other defaults.
    for (const char *pragma :
         {"encoding = 'UTF-8'", "page_size = 4096", "auto_vacuum = none", "journal_mode = delete"})
        run(query, QStringLiteral("pragma ") + QLatin1String(pragma), store);
    run(query, QStringLiteral("begin"), store);
    for (const QString &file : files) {
        for (const Statement &statement : readStatements(file))
            run(query, statement.text, QStringLiteral("%1:%2").arg(file, QString::number(statement.line)));
    }
    run(query, QStringLiteral("commit"), store);
    // Never "vacuum" here: it drops sqlite_sequence when no table numbers itself.
}

} // namespace

int main(int argc, char *argv[]) {
    const QCoreApplication app(argc, argv);
    QStringList files = QCoreApplication::arguments().mid(1);
    if (files.size() < 2) {
        QTextStream(stderr) << "usage: make_template STORE FILE.sql...\n";
        return 2;
    }
    const QString store = files.takeFirst();
    QFile::remove(store);
    QString failure;
    try {
        makeStore(store, files);
    } catch (const std::runtime_error &error) {
        failure = QString::fromLocal8Bit(error.what());
    }
    QSqlDatabase::removeDatabase(QStringLiteral("template"));
    if (failure.isEmpty())
        return 0;
    QFile::remove(store);
    QTextStream(stderr) << failure << '\n';
    return 1;
}
