#include "tools/sumo/export/Names.h"

#include <algorithm>

namespace moratools {

QString Names::usable(const QString &name) {
    static const QString refused = QStringLiteral("|\\'\";,<>&*?");
    QString id = name;
    for (QChar &c : id) {
        if (c.isSpace() || c.unicode() < ' ' || refused.contains(c))
            c = QLatin1Char('_');
    }
    // Ids of what is inside junctions begin with a colon.
    if (id.startsWith(QLatin1Char(':')))
        id[0] = QLatin1Char('_');
    return id;
}

bool Names::isLegible(const QString &id) {
    static const QByteArray converted("\xE4\xF6\xFC\xDF\xC9\xE9\xE8");
    const QByteArray bytes = id.toUtf8();
    return std::none_of(bytes.begin(), bytes.end(), [](char byte) { return converted.contains(byte); });
}

QString Names::unused(const QString &kind, const QString &wanted) {
    QSet<QString> &taken = mTaken[kind];
    QString id = wanted;
    for (int number = 2; taken.contains(id); ++number)
        id = QStringLiteral("%1_%2").arg(wanted, QString::number(number));
    taken.insert(id);
    return id;
}

void Names::give(const QString &kind, const QString &fallback, const std::vector<Named> &objects) {
    const auto wantedId = [](const Named &object) {
        return object.mayBeId ? usable(object.name) : QString();
    };
    QHash<QString, int> count;
    for (const Named &object : objects)
        ++count[wantedId(object)];
    QSet<QString> &taken = mTaken[kind];
    const QSet<QString> before = taken;
    // Those that keep their name come first, so that none that is made takes it.
    for (auto wanted = count.cbegin(); wanted != count.cend(); ++wanted) {
        if (!wanted.key().isEmpty() && *wanted == 1)
            taken.insert(wanted.key());
    }
    QJsonObject mapping = mKinds.value(kind).toObject();
    long place = 0;
    for (const Named &object : objects) {
        ++place;
        QString id = wantedId(object);
        if (id.isEmpty() || count.value(id) > 1 || before.contains(id)) {
            const QString number = QString::number(object.number != 0 ? object.number : place);
            id = unused(kind, id.isEmpty() ? fallback + number : QStringLiteral("%1_%2").arg(id, number));
        }
        mIds.insert(object.object, id);
        QJsonObject entry;
        if (object.number != 0)
            entry.insert(QStringLiteral("number"), qint64(object.number));
        if (object.name != id)
            entry.insert(QStringLiteral("name"), object.name);
        mapping.insert(id, entry);
    }
    mKinds.insert(kind, mapping);
}

} // namespace moratools
