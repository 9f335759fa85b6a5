#include "tests/support/ServerTrace.h"

#include <QSqlDatabase>
#include <QSqlDriver>
#include <QVariant>

#include <libpq-fe.h>

ServerTrace::ServerTrace(const QSqlDatabase &db)
    : mConnection(*static_cast<PGconn *const *>(db.driver()->handle().constData())), mFile(std::tmpfile()) {
    PQtrace(mConnection, mFile);
}

ServerTrace::~ServerTrace() {
    PQuntrace(mConnection);
    std::fclose(mFile);
}

QStringList ServerTrace::statements() const {
    std::fflush(mFile);
    std::rewind(mFile);
    QByteArray all;
    for (int c = std::fgetc(mFile); c != EOF; c = std::fgetc(mFile))
        all.append(char(c));
    QStringList sent;
    for (const QByteArray &line : all.split('\n')) {
        const int statement = line.indexOf("\tQuery\t");
        if (statement >= 0)
            sent.append(QString::fromUtf8(line.mid(statement + int(sizeof "\tQuery\t") - 1).trimmed()));
    }
    return sent;
}
