#include "Description.h"

#include "StoredJson.h"

#include <QJsonArray>

namespace {

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
