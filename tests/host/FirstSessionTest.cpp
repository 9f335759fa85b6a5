#include "tests/host/Morastore.h"
#include "tests/support/Places.h"

#include <QDir>
#include <QProcess>
#include <QRegularExpression>

namespace {

/// The rows of README.md's first session, up to those that need a server, without their comments.
QStringList rowsOfFirstSession() {
    QFile page(sourceFolder() + QStringLiteral("/README.md"));
    EXPECT_TRUE(page.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(page.readAll());
    const int begin = text.indexOf(QLatin1String("## A first session"));
    const int end = text.indexOf(QLatin1String("Where a server runs"), begin);
    EXPECT_TRUE(begin > 0 && end > begin);
    static const QRegularExpression row(QStringLiteral("^    ((?:morastore|cp|sqlite3) [^#\\n]*)"),
                                        QRegularExpression::MultilineOption);
    QStringList rows;
    for (auto found = row.globalMatch(text.mid(begin, end - begin)); found.hasNext();)
        rows.append(found.next().captured(1).trimmed());
    return rows;
}

class FirstSession : public Morastore {};

} // namespace

TEST_F(FirstSession, EveryRowWorksAsItStands) {
    const QString before = QDir::currentPath();
    QDir::setCurrent(file(QString()));
    EXPECT_TRUE(QFile::link(sourceFolder() + QStringLiteral("/examples"), QStringLiteral("examples")));
    const QStringList rows = rowsOfFirstSession();
    EXPECT_GT(rows.size(), 8);
    for (const QString &row : rows) {
        if (!row.startsWith(QLatin1String("morastore "))) {
            EXPECT_EQ(QProcess::execute(QStringLiteral("sh"), {QStringLiteral("-c"), row}), 0)
                << row.toStdString();
            continue;
        }
        const Outcome outcome = run(row.split(QLatin1Char(' '), Qt::SkipEmptyParts).mid(1));
        EXPECT_EQ(outcome.exitCode, 0) << row.toStdString() << '\n' << outcome.err.toStdString();
    }
    QDir::setCurrent(before);
}
