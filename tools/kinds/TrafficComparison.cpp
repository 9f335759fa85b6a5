#include "tools/kinds/TrafficComparison.h"

#include "tools/kinds/Kinds.h"

#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>

namespace moratools {

namespace {

QString shown(const QJsonValue &value) {
    const QString list = QString::fromUtf8(QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact));
    return list.mid(1, list.size() - 2);
}

bool isSame(const QJsonValue &a, const QJsonValue &b) {
    return a.isDouble() && b.isDouble() ? sameBits(a.toDouble(), b.toDouble()) : a == b;
}

/// Compares two objects down to their single values.
void compareValues(const QString &path, const QJsonValue &written, const QJsonValue &read,
                   Comparison &result) {
    if (written.isObject() && read.isObject()) {
        const QJsonObject a = written.toObject();
        const QJsonObject b = read.toObject();
        for (auto field = a.constBegin(); field != a.constEnd(); ++field)
            compareValues(path + QLatin1Char(' ') + field.key(), field.value(), b.value(field.key()), result);
    } else if (written.isArray() && read.isArray() && written.toArray().size() == read.toArray().size()) {
        const QJsonArray a = written.toArray();
        const QJsonArray b = read.toArray();
        for (int i = 0; i < a.size(); ++i)
            compareValues(path + QStringLiteral(" %1").arg(i + 1), a.at(i), b.at(i), result);
    } else {
        ++result.fields;
        if (!isSame(written, read))
            result.differ(path, shown(written), shown(read));
    }
}

template <class T>
void compareKind(const Objects<T> &written, const Objects<T> &read, Comparison &result) {
    QHash<qint64, const T *> readById;
    for (const auto &object : read)
        readById.insert(describe(*object).id, object.get());
    for (const auto &object : written) {
        const Description description = describe(*object);
        const QString path =
            QStringLiteral("%1 %2 \"%3\"")
                .arg(QLatin1String(kindWord<T>()), QString::number(description.id), description.name);
        if (const T *other = readById.value(description.id))
            compareValues(path, description.fields, describe(*other).fields, result);
        else
            result.differ(path, QStringLiteral("one"), QStringLiteral("none"));
    }
    ++result.fields;
    if (written.size() != read.size())
        result.differ(QStringLiteral("number of objects (%1)").arg(QLatin1String(kindWord<T>())),
                      QString::number(written.size()), QString::number(read.size()));
}

} // namespace

void compareTraffic(const TrafficObjects &written, const TrafficObjects &read, Comparison &result) {
    forEachKind([&](auto list) { compareKind(written.*list, read.*list, result); });
}

} // namespace moratools
