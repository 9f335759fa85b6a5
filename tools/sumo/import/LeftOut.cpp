#include "tools/sumo/import/LeftOut.h"

#include <algorithm>

namespace moratools {

namespace {

constexpr int kNamed = 10;

} // namespace

void LeftOut::add(const QString &kind, qint64 count, const QString &what) {
    auto known =
        std::find_if(mKinds.begin(), mKinds.end(), [&kind](const Kind &entry) { return entry.name == kind; });
    if (known == mKinds.end())
        known = mKinds.insert(mKinds.end(), Kind{kind, 0, {}});
    known->count += count;
    if (known->named.size() < kNamed)
        known->named.append(what);
}

void LeftOut::add(const QString &kind, const QString &what, const SumoSource &source, const QString &reason) {
    add(kind, 1, what);
    mElements.push_back({source, reason});
}

void LeftOut::addKept(const QString &kind, const QString &what, const SumoSource &source) {
    add(kind, 1, what);
    mKeptElements.push_back(source);
}

qint64 LeftOut::count() const {
    qint64 all = 0;
    for (const Kind &kind : mKinds)
        all += kind.count;
    return all;
}

qint64 LeftOut::count(const QString &kind) const {
    for (const Kind &entry : mKinds) {
        if (entry.name == kind)
            return entry.count;
    }
    return 0;
}

QString LeftOut::summary() const {
    QStringList parts;
    for (const Kind &kind : mKinds)
        parts.append(QStringLiteral("%1 %2").arg(QString::number(kind.count), kind.name));
    return parts.join(QStringLiteral(", "));
}

QStringList LeftOut::lines() const {
    QStringList lines;
    for (const Kind &kind : mKinds) {
        lines.append(QStringLiteral("left out: %1 %2").arg(QString::number(kind.count), kind.name));
        for (const QString &what : kind.named)
            lines.append(QStringLiteral("  ") + what);
        if (kind.count > kind.named.size() && kind.named.size() == kNamed)
            lines.append(QStringLiteral("  and %1 more").arg(kind.count - kind.named.size()));
    }
    return lines;
}

} // namespace moratools
