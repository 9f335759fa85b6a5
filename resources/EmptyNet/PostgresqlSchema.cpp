#include "PostgresqlSchema.h"

#include "Statements.h"

#include <QRegularExpression>

#include <stdexcept>

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

/// The pieces read so far.
class Reading {
public:
    void add(const QString &line) {
        const bool isKept = !mLeaveOut;
        mLeaveOut = line.trimmed().startsWith(QLatin1String("-- Not on PostgreSQL:"));
        static const QRegularExpression head(QStringLiteral("^create table (\\w+) \\($"));
        static const QRegularExpression index(QStringLiteral("^create index \\w+ on (\\w+) "));
        const QRegularExpressionMatch table = head.match(line);
        if (table.hasMatch()) {
            mPieces.emplace_back();
            mPieces.back().table = table.captured(1);
            mIsInTable = true;
        } else if (!mIsInTable) {
            mPieces.emplace_back();
            mPieces.back().line = line;
            mPieces.back().table = index.match(line).captured(1);
        } else if (line == QLatin1String(");")) {
            mIsInTable = false;
        } else if (isKept) {
            addToTable(mPieces.back(), line);
        }
    }
    std::vector<Piece> pieces() const { return mPieces; }

private:
    static void addToTable(Piece &table, QString line) {
        static const QRegularExpression referred(QStringLiteral(" references (\\w+) "));
        if (line.endsWith(QLatin1Char(',')) && !line.trimmed().startsWith(QLatin1String("--")))
            line.chop(1);
        const QRegularExpressionMatch column = kColumn.match(line);
        if (line.contains(QLatin1String(" foreign key ")))
            table.keys.push_back({line.trimmed(), referred.match(line).captured(1)});
        else if (line.contains(QLatin1String("primary key ")))
            table.primaryKey = line;
        else if (column.hasMatch())
            table.columns.append(
                QStringLiteral("    %1 %2 %3")
                    .arg(column.captured(1).remove(QLatin1Char('[')).remove(QLatin1Char(']')),
                         postgresqlType(column.captured(2)), column.captured(3)));
        else
            table.columns.append(line);
    }

    std::vector<Piece> mPieces;
    bool mIsInTable = false;
    bool mLeaveOut = false;
};

} // namespace

QString Piece::leader() const {
    return columns.value(0).trimmed().section(QLatin1Char(' '), 0, 0);
}

bool Piece::isLedByNetwork() const {
    return leader().compare(QLatin1String("NetId"), Qt::CaseInsensitive) == 0;
}

std::vector<Piece> postgresqlSchema(const QStringList &files) {
    Reading reading;
    for (const QString &file : files) {
        for (const QString &line : readLines(file))
            reading.add(line);
    }
    return reading.pieces();
}
