#include "Statements.h"

#include <QCoreApplication>
#include <QRegularExpression>
#include <QSaveFile>
#include <QStringList>
#include <QTextStream>

#include <stdexcept>

/// Makes the SQL text of the PostgreSQL schema from that of the SQLite template.
///
/// Usage: make_postgresql_text OUTPUT FILE.sql...
///
/// The text is that of the files but for three things. Types become those that keep what is written
/// bit for bit (kTypes). Foreign keys are added when all tables are there, since the server asks for the
/// table that a key refers to. A key that follows a line starting with "-- Not on PostgreSQL:" stays out:
/// the server enforces every key that it has.

namespace {

struct Type {
    const char *sqlite; ///< as a regular expression
    const char *postgresql;
};

constexpr Type kTypes[] = {
    // Room for 64 bits everywhere: SQLite's integers have no narrower kinds.
    {"Bigint|Integer|int", "bigint"},
    // Digits behind the point are no limit to SQLite, which keeps every number as it is.
    {"Numeric\\([0-9,]+\\)|Float", "double precision"},
    // Neither are lengths; and Char(n) would give texts back filled up with blanks.
    {"Varchar\\([0-9]+\\)|Char\\([0-9]+\\)|Text", "text"},
    // The library binds JSON as text here.
    {"BINARY\\([0-9]+\\)", "text"},
    {"Byte Varying", "bytea"},
    {"Date", "date"},
};

/// "    NAME TYPE NULL-CLAUSE": a column of a table. The type may be missing.
const QRegularExpression
    kColumn(QStringLiteral("^    (\\[?\\w+\\]?) (?:(?!not null)(.+?) )?((?:not )?null\\b.*)$"));

QString postgresqlType(const QString &sqlite) {
    // A column without a type is a network's.
    if (sqlite.isEmpty())
        return QStringLiteral("bigint");
    for (const Type &type : kTypes) {
        const QRegularExpression whole(QStringLiteral("^(?:%1)$").arg(QLatin1String(type.sqlite)));
        if (whole.match(sqlite).hasMatch())
            return QLatin1String(type.postgresql);
    }
    throw std::runtime_error(qPrintable(QStringLiteral("there is no PostgreSQL type for '%1'").arg(sqlite)));
}

/// The text made so far, with the keys that follow the tables.
class Text {
public:
    void add(const QString &line) {
        const bool isKept = !mLeaveOut;
        mLeaveOut = line.trimmed().startsWith(QLatin1String("-- Not on PostgreSQL:"));
        static const QRegularExpression head(QStringLiteral("^create table (\\w+) \\($"));
        const QRegularExpressionMatch table = head.match(line);
        if (table.hasMatch())
            mTable = table.captured(1);
        if (!mTable.isEmpty() && line == QLatin1String(");"))
            endTable();
        else if (mTable.isEmpty() || table.hasMatch())
            mLines.append(line);
        else if (isKept)
            addToTable(line);
    }
    QString text() const { return (mLines + mKeys).join(QLatin1Char('\n')) + QLatin1Char('\n'); }

private:
    void addToTable(QString line) {
        if (line.trimmed().startsWith(QLatin1String("--"))) {
            mBody.append(line);
            return;
        }
        if (line.endsWith(QLatin1Char(',')))
            line.chop(1);
        const QRegularExpressionMatch column = kColumn.match(line);
        if (line.contains(QLatin1String(" foreign key ")))
            mKeys.append(QStringLiteral("alter table %1 add %2;").arg(mTable, line.trimmed()));
        else if (column.hasMatch())
            mBody.append(QStringLiteral("    %1 %2 %3")
                             .arg(column.captured(1).remove(QLatin1Char('[')).remove(QLatin1Char(']')),
                                  postgresqlType(column.captured(2)), column.captured(3)));
        else
            mBody.append(line);
    }

    void endTable() {
        bool isLast = true;
        for (auto line = mBody.rbegin(); line != mBody.rend(); ++line) {
            if (line->trimmed().startsWith(QLatin1String("--")))
                continue;
            if (!isLast)
                line->append(QLatin1Char(','));
            isLast = false;
        }
        mLines += mBody;
        mLines.append(QStringLiteral(");"));
        mBody.clear();
        mTable.clear();
    }

    QStringList mLines;
    QStringList mKeys;
    QString mTable; ///< the table whose lines come
    QStringList mBody;
    bool mLeaveOut = false;
};

void write(const QString &path, const QString &text) {
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(text.toUtf8()) < 0 || !file.commit())
        throw std::runtime_error(qPrintable(path + QStringLiteral(": ") + file.errorString()));
}

} // namespace

int main(int argc, char *argv[]) {
    const QCoreApplication app(argc, argv);
    QStringList files = QCoreApplication::arguments().mid(1);
    if (files.size() < 2) {
        QTextStream(stderr) << "usage: make_postgresql_text OUTPUT FILE.sql...\n";
        return 2;
    }
    const QString output = files.takeFirst();
    try {
        Text text;
        for (const QString &file : files) {
            for (const QString &line : readLines(file))
                text.add(line);
        }
        write(output, text.text());
    } catch (const std::runtime_error &error) {
        QTextStream(stderr) << error.what() << '\n';
        return 1;
    }
    return 0;
}
