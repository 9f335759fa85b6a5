#include "store/core/RowRecording.h"

#include <QRegularExpression>

#include <utility>

namespace {

/// Calls @p use with the place of each character outside of quotes, and how many brackets are open there,
/// until that gives false.
template <class Use>
void forEachOutsideQuotes(const QString &sql, const Use &use) {
    int depth = 0;
    QChar quote;
    for (int i = 0; i < sql.size(); ++i) {
        const QChar character = sql.at(i);
        if (!quote.isNull()) {
            quote = character == quote ? QChar() : quote;
            continue;
        }
        if (character == QLatin1Char('\'') || character == QLatin1Char('"')) {
            quote = character;
            continue;
        }
        depth += character == QLatin1Char('(') ? 1 : character == QLatin1Char(')') ? -1 : 0;
        if (!use(i, depth))
            return;
    }
}

/// A statement in which positional placeholders are numbered, so that a part of it can stand twice.
QString numbered(const QString &sql) {
    QString text;
    int copied = 0;
    int number = 0;
    forEachOutsideQuotes(sql, [&](int i, int) {
        if (sql.at(i) != QLatin1Char('?'))
            return true;
        text += sql.midRef(copied, i - copied) + QLatin1Char('$') + QString::number(++number);
        copied = i + 1;
        return true;
    });
    return text + sql.midRef(copied);
}

/// The condition of an update, from its "where" on; empty without one.
QString conditionOf(const QString &update) {
    static const QRegularExpression word(QStringLiteral("\\bwhere\\b"),
                                         QRegularExpression::CaseInsensitiveOption);
    int begin = update.size();
    forEachOutsideQuotes(update, [&](int i, int depth) {
        if (depth > 0 || update.at(i).toLower() != QLatin1Char('w') ||
            !word.match(update, i, QRegularExpression::NormalMatch, QRegularExpression::AnchoredMatchOption)
                 .hasMatch())
            return true;
        begin = i;
        return false;
    });
    return update.mid(begin);
}

} // namespace

RowRecording::RowRecording(QHash<QString, QString> tables, QString condition, QObject *parent)
    : QObject(parent), mTables(std::move(tables)), mCondition(std::move(condition)) {}

QString RowRecording::kept(const QString &table, const char *rows, bool areThose) const {
    return QStringLiteral("insert into %1 select %2, %3.* from %3")
               .arg(table, areThose ? QStringLiteral("true") : QStringLiteral("false"), QLatin1String(rows)) +
           (mCondition.isEmpty() ? QString() : QStringLiteral(" where ") + mCondition);
}

QString RowRecording::statement(const QString &sql) const {
    static const QRegularExpression form(
        QStringLiteral("^\\s*(insert\\s+into|delete\\s+from|update)\\s+(\"?)(\\w+)\\2"),
        QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch match = form.match(sql);
    const auto table = mTables.constFind(match.captured(3).toLower());
    if (!match.hasMatch() || table == mTables.constEnd())
        return sql;
    const QChar verb = match.captured(1).at(0).toLower();
    if (verb == QLatin1Char('i'))
        return QStringLiteral("with added as (") + sql + QStringLiteral(" returning *) ") +
               kept(*table, "added", true);
    if (verb == QLatin1Char('d'))
        return QStringLiteral("with removed as (") + sql + QStringLiteral(" returning *) ") +
               kept(*table, "removed", false);
    // All parts of a statement see the rows as they were before it: so this reads the old ones. What another
    // program changes at the very moment in which the statement waits for it, is not among them.
    const QString update = numbered(sql);
    const QString old = QStringLiteral("select * from ") + match.captured(2) + match.captured(3) +
                        match.captured(2) + QLatin1Char(' ') + conditionOf(update);
    return QStringLiteral("with added as (") + update + QStringLiteral(" returning *), removed as (") + old +
           QStringLiteral("), kept as (") + kept(*table, "removed", false) + QStringLiteral(") ") +
           kept(*table, "added", true);
}
