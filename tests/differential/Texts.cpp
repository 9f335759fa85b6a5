#include "tests/differential/Texts.h"

#include "tests/differential/Fields.h"

#include <QJsonDocument>
#include <gtest/gtest.h>

#include <type_traits>

namespace differential {

namespace {

QString text(long value) {
    return QString::number(value);
}
QString text(int value) {
    return QString::number(value);
}
QString text(bool value) {
    return value ? QStringLiteral("yes") : QStringLiteral("no");
}
// Seventeen digits tell all doubles apart.
QString text(double value) {
    return QString::number(value, 'g', 17);
}
QString text(float value) {
    return QString::number(double(value), 'g', 17);
}
QString text(const QString &value) {
    return QLatin1Char('"') + value + QLatin1Char('"');
}
QString text(const QByteArray &value) {
    return QString::fromLatin1(value.toHex());
}
QString text(const QDateTime &value) {
    return value.toString(Qt::ISODateWithMs);
}
QString text(const StoredJson &value) {
    return QString::fromUtf8(QJsonDocument(value.object()).toJson(QJsonDocument::Compact));
}

/// Writes fields down.
class TextVisitor {
public:
    template <class Value>
    void value(const char *name, const Value &value) {
        line(name, text(value));
    }
    template <class Value>
    void id(const char *name, const Value &value) {
        line(name, text(value));
    }
    void word(const char *name, const QString &value) { line(name, text(value)); }

    template <class Object, class Id>
    void reference(const char *name, Object *object, Id Object::*id) {
        line(name, object ? text(object->*id) : QStringLiteral("null"));
    }
    template <class Object>
    void references(const char *name, const QList<Object *> &objects, long Object::*id) {
        QStringList ids;
        for (const Object *object : objects)
            ids.append(object ? text(object->*id) : QStringLiteral("null"));
        line(name, ids.join(QLatin1Char(' ')));
    }
    template <class Object>
    void part(const char *name, Object *object) {
        if (object)
            inside(QLatin1String(name), *object);
        else
            line(name, QStringLiteral("null"));
    }
    template <class List>
    void list(const char *name, List &objects) {
        line(name, text(int(objects.size())) + QLatin1String(" of them"));
        int number = 0;
        for (auto &object : objects)
            element(QLatin1String(name) + QLatin1Char('[') + text(number++) + QLatin1Char(']'), object);
    }
    template <class Object>
    void optional(const char *name, std::optional<Object> &object) {
        part(name, object ? &*object : nullptr);
    }

    QStringList lines;

private:
    void line(const char *name, const QString &value) {
        lines.append(mPath + QLatin1String(name) + QLatin1String(": ") + value);
    }
    void element(const QString &name, long id) {
        lines.append(mPath + name + QLatin1String(": ") + text(id));
    }
    template <class Object>
    void element(const QString &name, Object *object) {
        inside(name, *object);
    }
    template <class Object>
    void element(const QString &name, std::unique_ptr<Object> &object) {
        inside(name, *object);
    }
    template <class Object>
    std::enable_if_t<std::is_class_v<Object>> element(const QString &name, Object &object) {
        inside(name, object);
    }
    template <class Object>
    void inside(const QString &name, Object &object) {
        const QString outside = mPath;
        mPath += name + QLatin1Char('.');
        fields(*this, object);
        mPath = outside;
    }

    QString mPath;
};

} // namespace

QStringList textsOf(NetContents &net) {
    TextVisitor texts;
    fields(texts, net);
    return texts.lines;
}

QStringList reportOf(const NetContents &net) {
    QStringList report;
    for (const SkippedRows &rows : net.skipped) {
        QStringList ids;
        for (const long id : rows.ids)
            ids.append(QString::number(id));
        report.append(QStringLiteral("%1 %2 %3").arg(rows.table, ids.join(QLatin1Char(',')), rows.reason));
    }
    return report;
}

void expectSame(const QStringList &expected, const QStringList &actual) {
    if (expected == actual)
        return;
    int first = 0;
    while (first < expected.size() && first < actual.size() && expected.at(first) == actual.at(first))
        ++first;
    constexpr int lines = 5;
    constexpr int width = 400;
    QString message = QLatin1String("line ") + text(first) + QLatin1String(" of ") + text(expected.size()) +
                      QLatin1String(" and ") + text(actual.size());
    for (const QString &line : expected.mid(first, lines))
        message += QLatin1String("\n- ") + line.left(width);
    for (const QString &line : actual.mid(first, lines))
        message += QLatin1String("\n+ ") + line.left(width);
    ADD_FAILURE() << qPrintable(message);
}

} // namespace differential
