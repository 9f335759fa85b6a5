#pragma once

#include "tests/differential/FieldWalk.h"

#include <QByteArray>
#include <QDateTime>
#include <QJsonArray>
#include <QJsonObject>
#include <QSet>
#include <QStringList>

#include <functional>

namespace differential {

/// Goes through the values of objects and changes one: the first that it has not changed before.
class OneChange : public FieldWalk<OneChange> {
public:
    explicit OneChange(QSet<QString> &done) : mDone(done) {}

    template <class Value>
    void value(const char *name, Value &value) {
        const QString field = (mPath + QStringList(QLatin1String(name))).join(QLatin1Char('.'));
        if (!mField.isEmpty() || mDone.contains(field))
            return;
        mDone.insert(field);
        mField = field;
        const Value before = value;
        mUndo = [&value, before] { value = before; };
        change(value);
    }
    void word(const char *name, QString &text) { value(name, text); }
    template <class Value>
    void id(const char *name, Value &id) {
        value(name, id);
    }
    template <class List>
    void list(const char *name, List &objects) {
        mPath.append(QLatin1String(name));
        FieldWalk::list(name, objects);
        mPath.removeLast();
    }
    template <class Object>
    void part(const char *name, Object *object) {
        mPath.append(QLatin1String(name));
        FieldWalk::part(name, object);
        mPath.removeLast();
    }
    template <class Object>
    void optional(const char *name, std::optional<Object> &object) {
        mPath.append(QLatin1String(name));
        FieldWalk::optional(name, object);
        mPath.removeLast();
    }

    /// What was changed; empty when nothing was left to change.
    QString field() const { return mField; }
    void undo() const { mUndo(); }

private:
    template <class Number>
    static void change(Number &number) {
        // Random networks hold the smallest and the largest numbers.
        number += number > 0 ? -1 : 1;
    }
    static void change(bool &flag) { flag = !flag; }
    static void change(QString &text) { text += QLatin1Char('!'); }
    static void change(QByteArray &bytes) { bytes += '!'; }
    static void change(QDateTime &time) { time = time.addDays(1); }
    static void change(StoredJson &json) {
        const QJsonObject point{
            {QStringLiteral("x"), 1.5}, {QStringLiteral("y"), 2.5}, {QStringLiteral("z"), 3.5}};
        json = StoredJson(QJsonObject{{QStringLiteral("data"), QJsonArray{point}}});
    }

    QSet<QString> &mDone;
    QStringList mPath;
    QString mField;
    std::function<void()> mUndo;
};

} // namespace differential
