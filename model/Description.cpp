#include "Description.h"

#include "StoredJson.h"

#include <QJsonArray>

#include <algorithm>
#include <cstring>

namespace {

quint64 bitsOf(double value) {
    quint64 bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

QJsonObject jsonOf(const QVariantMap &fields);

QJsonValue jsonOf(const QVariant &value) {
    if (value.userType() == qMetaTypeId<StoredJson>())
        return value.value<StoredJson>().object();
    if (value.userType() == QMetaType::QVariantMap)
        return jsonOf(value.toMap());
    if (value.userType() != QMetaType::QVariantList)
        return QJsonValue::fromVariant(value);
    QJsonArray list;
    const QVariantList values = value.toList();
    for (const QVariant &each : values)
        list.append(jsonOf(each));
    return list;
}

QJsonObject jsonOf(const QVariantMap &fields) {
    QJsonObject object;
    for (auto field = fields.constBegin(); field != fields.constEnd(); ++field)
        object.insert(field.key(), jsonOf(field.value()));
    return object;
}

} // namespace

QJsonObject Description::toJson() const {
    return jsonOf(fields);
}

bool areSameFields(const QVariantMap &a, const QVariantMap &b) {
    return a.keys() == b.keys() && std::equal(a.cbegin(), a.cend(), b.cbegin(), isSameField);
}

bool isSameField(const QVariant &a, const QVariant &b) {
    if (a.userType() != b.userType())
        return a == b;
    if (a.userType() == qMetaTypeId<StoredJson>())
        return a.value<StoredJson>() == b.value<StoredJson>();
    if (a.userType() == QMetaType::Double)
        return bitsOf(a.toDouble()) == bitsOf(b.toDouble());
    if (a.userType() == QMetaType::QVariantMap)
        return areSameFields(a.toMap(), b.toMap());
    if (a.userType() != QMetaType::QVariantList)
        return a == b;
    const QVariantList left = a.toList();
    const QVariantList right = b.toList();
    return std::equal(left.cbegin(), left.cend(), right.cbegin(), right.cend(), isSameField);
}
