#include "tools/differences/DifferenceReport.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMap>

#include <algorithm>

namespace moratools {

namespace {

// Longer ones are geometry, attributes and pictures: that they differ is all that fits into a line.
constexpr int kLongestShown = 60;

QString shown(const QVariant &value) {
    switch (value.userType()) {
    case QMetaType::UnknownType:
        return QStringLiteral("none");
    case QMetaType::LongLong:
        return QString::number(value.toLongLong());
    case QMetaType::Double:
        return QString::number(value.toDouble(), 'g', 15);
    case QMetaType::QByteArray:
        return QStringLiteral("%1 bytes").arg(value.toByteArray().size());
    default:
        return QLatin1Char('"') + value.toString() + QLatin1Char('"');
    }
}

bool isLong(const QVariant &value) {
    return value.userType() == QMetaType::QString &&
           (value.toString().size() > kLongestShown || value.toString().startsWith(QLatin1Char('{')));
}

/// How much a long text holds: the points of a line, else its characters.
QString measured(const QVariant &value, bool asPoints) {
    if (!isLong(value))
        return shown(value);
    const QString text = value.toString();
    if (!asPoints)
        return QStringLiteral("%1 characters").arg(text.size());
    const QJsonObject line = QJsonDocument::fromJson(text.toUtf8()).object();
    return QStringLiteral("%1 points").arg(line.value(QLatin1String("data")).toArray().size());
}

QString difference(const QString &column, const QVariant &before, const QVariant &after) {
    if (!isLong(before) && !isLong(after))
        return QStringLiteral("%1 %2 -> %3").arg(column, shown(before), shown(after));
    const bool isLine = column.endsWith(QLatin1String("PointsJson"), Qt::CaseInsensitive);
    const QString was = measured(before, isLine);
    const QString is = measured(after, isLine);
    return was == is ? QStringLiteral("%1 changed (%2)").arg(column, is)
                     : QStringLiteral("%1 changed (%2 -> %3)").arg(column, was, is);
}

QString differences(const RowChange &change) {
    QStringList texts;
    for (auto column = change.after.cbegin(); column != change.after.cend(); ++column)
        texts.append(difference(column.key(), change.before.value(column.key()), column.value()));
    return texts.join(QStringLiteral(", "));
}

QString outcome(const RowChange &change) {
    if (change.kind == RowChange::Kind::Changed)
        return QStringLiteral(": ") + differences(change);
    return change.kind == RowChange::Kind::Added ? QStringLiteral(" added") : QStringLiteral(" removed");
}

/// What objects of a table are called; the table's own name where they are none.
QString wordOf(const catalogue::Table &table) {
    const QString word = catalogue::wordFor(QLatin1String(table.name));
    return word.startsWith(QLatin1String("row of ")) ? QString::fromLatin1(table.name) : word;
}

/// What a row is called under its owner: by its own number, or by what else tells it apart.
QString partName(const RowChange &change) {
    const QString word = wordOf(*change.table);
    if (change.table->id && change.key.size() == 1)
        return word + QLatin1Char(' ') + shown(change.key.first()) +
               (change.name.isEmpty() ? QString() : QStringLiteral(" \"%1\"").arg(change.name));
    QStringList rest;
    const catalogue::Reference *owner = change.table->owner();
    for (auto column = change.key.cbegin(); column != change.key.cend(); ++column) {
        if (!owner || column.key().compare(QLatin1String(owner->column), Qt::CaseInsensitive) != 0)
            rest.append(column.key() + QLatin1Char(' ') + shown(column.value()));
    }
    return rest.isEmpty() ? word : QStringLiteral("%1 (%2)").arg(word, rest.join(QStringLiteral(", ")));
}

bool isPart(const RowChange &change) {
    return change.table->owner() && change.owner.isValid();
}

/// Of rows that go or come with their owner, how many there are of each kind.
QString companions(const std::vector<RowChange> &parts) {
    QMap<QString, int> counts;
    for (const RowChange &part : parts)
        ++counts[wordOf(*part.table)];
    QStringList texts;
    for (auto count = counts.cbegin(); count != counts.cend(); ++count)
        texts.append(QStringLiteral("%1 x %2").arg(QString::number(count.value()), count.key()));
    return texts.isEmpty() ? QString() : QStringLiteral(" with ") + texts.join(QStringLiteral(", "));
}

} // namespace

DifferenceReport::Object &DifferenceReport::objectOf(const RowChange &change) {
    const bool belongs = isPart(change);
    const catalogue::Table *table =
        belongs ? catalogue::find(QLatin1String(change.table->owner()->table)) : change.table;
    // Settings and the like have no number, and are one object.
    const QVariant own = change.key.size() == 1 ? change.key.first() : QVariant();
    const QVariant id = belongs ? change.owner : own;
    const QString place = QLatin1String(table->name) + QLatin1Char(' ') + shown(id);
    const auto known = mPlaces.constFind(place);
    if (known != mPlaces.constEnd())
        return mObjects[*known];
    mPlaces.insert(place, mObjects.size());
    mObjects.push_back({table, id, {}, {}, {}});
    return mObjects.back();
}

void DifferenceReport::add(const RowChange &change) {
    Object &object = objectOf(change);
    if (isPart(change)) {
        object.parts.push_back(change);
    } else {
        object.own.push_back(change);
        object.name = change.name;
    }
}

RowChange::Kind DifferenceReport::kindOf(const Object &object) {
    const bool isWhole = object.id.isValid() && object.own.size() == 1;
    return isWhole ? object.own.front().kind : RowChange::Kind::Changed;
}

std::vector<DifferenceReport::Difference> DifferenceReport::differences() const {
    std::vector<Difference> differences;
    for (const Object &object : mObjects)
        differences.push_back({object.table->name, object.id.toLongLong(), kindOf(object)});
    return differences;
}

QList<DifferenceReport::Count> DifferenceReport::counts() const {
    QList<Count> counts;
    for (const catalogue::Table &table : catalogue::tables()) {
        const catalogue::Kind *kind = catalogue::kindIn(QLatin1String(table.name));
        Count count{QLatin1String(kind ? kind->plural : table.name)};
        for (const Object &object : mObjects) {
            if (object.table != &table)
                continue;
            const RowChange::Kind outcome = kindOf(object);
            ++(outcome == RowChange::Kind::Changed ? count.changed
               : outcome == RowChange::Kind::Added ? count.added
                                                   : count.removed);
        }
        if (count.added + count.removed + count.changed > 0)
            counts.append(count);
    }
    return counts;
}

void DifferenceReport::findNames(const StoreReader &store, const NamedNetwork &now) {
    for (const catalogue::Table &entry : catalogue::tables()) {
        const catalogue::Kind *kind = catalogue::kindIn(QLatin1String(entry.name));
        const StoreTable *table = store.table(QLatin1String(entry.name));
        const StoreColumn *name = kind && table ? table->column(QLatin1String(kind->name)) : nullptr;
        const StoreColumn *id = entry.id && table ? table->column(QLatin1String(entry.id)) : nullptr;
        if (!name || !id)
            continue;
        std::vector<qint64> ids;
        for (const Object &object : mObjects) {
            if (object.table == &entry && object.own.empty() && object.id.userType() == QMetaType::LongLong)
                ids.push_back(object.id.toLongLong());
        }
        const QHash<qint64, QString> names = store.texts(*table, *id, *name, now, ids);
        for (Object &object : mObjects) {
            if (object.table == &entry && object.own.empty())
                object.name = names.value(object.id.toLongLong());
        }
    }
}

QStringList DifferenceReport::lines(const StoreReader &store, const NamedNetwork &now) {
    findNames(store, now);
    std::vector<const Object *> ordered;
    for (const Object &object : mObjects)
        ordered.push_back(&object);
    std::stable_sort(ordered.begin(), ordered.end(), [](const Object *one, const Object *other) {
        return one->table != other->table ? one->table < other->table
                                          : one->id.toLongLong() < other->id.toLongLong();
    });
    QStringList lines;
    for (const Object *object : ordered) {
        QString heading = wordOf(*object->table);
        if (object->id.isValid())
            heading += QLatin1Char(' ') + shown(object->id);
        if (!object->name.isEmpty())
            heading += QStringLiteral(" \"%1\"").arg(object->name);
        if (kindOf(*object) != RowChange::Kind::Changed) {
            lines.append(heading + outcome(object->own.front()) + companions(object->parts));
            continue;
        }
        for (const RowChange &change : object->own)
            lines.append((object->id.isValid() ? heading : partName(change)) + outcome(change));
        if (object->own.empty())
            lines.append(heading + QStringLiteral(":"));
        for (const RowChange &part : object->parts)
            lines.append(QStringLiteral("  ") + partName(part) + outcome(part));
    }
    return lines;
}

} // namespace moratools
