#include "tools/checks/Finding.h"

namespace moratools {

void Reporter::find(const char *table, qint64 id, const QString &text) {
    find(Finding{0, QLatin1String(table), id, text, {}});
}

void Reporter::find(const char *table, qint64 id, const QString &text, const QPointF &place) {
    find(Finding{0, QLatin1String(table), id, text, place});
}

void Reporter::find(const QString &text) {
    find(Finding{0, {}, {}, text, {}});
}

void Reporter::find(Finding finding) {
    ++mFound.count;
    if (mFound.findings.size() >= kMostKept)
        return;
    finding.network = mNetwork;
    mFound.findings.append(finding);
}

QString called(const QString &word, qint64 id, const QString &name) {
    const QString named = QStringLiteral("%1 %2").arg(word, QString::number(id));
    return name.isEmpty() ? named : QStringLiteral("%1 \"%2\"").arg(named, name);
}

QString shown(double number) {
    return QString::number(number, 'g', 6);
}

} // namespace moratools
