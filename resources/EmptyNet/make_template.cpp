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
/// A statement ends with a semicolon at the end of a line; a comment is a line of its own that starts with
/// "--". A refused statement ends the run with the file, the line and the engine's words, and leaves no
/// store.

namespace {

struct Statement {
    QString text;
    int line; ///< where it starts, counted from 1
};

QList<Statement> readStatements(const QString &path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        throw std::runtime_error(qPrintable(path + QStringLiteral(": ") + file.errorString()));
    QTextStream in(&file);
    in.setCodec("UTF-8");
    QList<Statement> statements;
    Statement current{QString(), 0};
    for (int line = 1; !in.atEnd(); ++line) {
        const QString text = in.readLine();
        if (current.text.isEmpty() && text.trimmed().isEmpty())
            continue;
        if (text.trimmed().startsWith(QLatin1String("--")))
            continue;
        if (current.text.isEmpty())
            current.line = line;
        else
            current.text += QLatin1Char('\n');
        current.text += text;
        if (!text.endsWith(QLatin1Char(';')))
            continue;
        current.text.chop(1);
        statements.append(current);
        current = {QString(), 0};
    }
    if (!current.text.isEmpty())
        throw std::runtime_error(
            qPrintable(QStringLiteral("%1:%2: the statement has no semicolon at the end of a line")
                           .arg(path)
                           .arg(current.line)));
    return statements;
}

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
            run(query, statement.text, QStringLiteral("%1:%2").arg(file).arg(statement.line));
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
