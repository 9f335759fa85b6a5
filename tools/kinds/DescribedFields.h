#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QString>

namespace moratools {

/// Collects fields under their names.
class Fields {
public:
    template <class T>
    Fields &add(const char *name, const T &value) {
        mFields.insert(QLatin1String(name), valueOf(value));
        return *this;
    }
    /// A list of what `fieldsOf` makes of each object.
    template <class List, class FieldsOf>
    Fields &addList(const char *name, const List &objects, const FieldsOf &fieldsOf) {
        QJsonArray list;
        for (const auto &object : objects)
            list.append(QJsonValue(fieldsOf(object)));
        mFields.insert(QLatin1String(name), list);
        return *this;
    }
    operator QJsonObject() const { return mFields; }

private:
    static QJsonValue valueOf(long value) { return qint64(value); }
    template <class T>
    static QJsonValue valueOf(const T &value) {
        return value;
    }

    QJsonObject mFields;
};

} // namespace moratools
