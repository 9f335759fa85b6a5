#pragma once

#include "MoraStoreExport.h"

#include <QByteArray>
#include <QDebug>
#include <QJsonObject>
#include <QMetaType>

#include <initializer_list>
#include <type_traits>

/// A JSON object that keeps the text it was read from and becomes a QJsonObject when first asked.
///
/// Code that reads or assigns a QJsonObject works on it unchanged. A value that was read and not changed is
/// written back with exactly the bytes it was read with, also when they do not parse (as an object they are
/// empty then, and only an assignment replaces them). A copy shares both forms. Reading fills the second
/// form, so like the rest of the library a value is used by one thread at a time.
class MORASTORE_EXPORT StoredJson {
public:
    using const_iterator = QJsonObject::const_iterator;

    StoredJson() = default;
    // No implicit conversion in this direction: with one in each, `condition ? object : stored` would not
    // compile.
    explicit StoredJson(const QJsonObject &object) : mObject(object) {}
    /// @param text the stored form, UTF-8; not looked at before the object is asked for.
    static StoredJson fromText(const QByteArray &text);

    StoredJson &operator=(const QJsonObject &object) { return *this = StoredJson(object); }
    StoredJson &operator=(std::initializer_list<QPair<QString, QJsonValue>> members) {
        return *this = QJsonObject(members);
    }

    /// The object; empty when the text does not parse. The reference shows later changes of the value, as a
    /// reference to a QJsonObject would.
    const QJsonObject &object() const {
        if (mIsUnread)
            read();
        return mObject;
    }
    operator const QJsonObject &() const { return object(); }
    operator QJsonValue() const { return object(); }

    /// The stored form: the text as it was read, else the object written compactly.
    QByteArray text() const;
    /// Whether there is a text as it was read.
    bool hasText() const { return !mText.isEmpty(); }
    /// Whether there is neither a member nor any text but that of an empty object: nothing worth storing.
    bool holdsNothing() const {
        return mText.isEmpty() ? mObject.isEmpty() : mText == QByteArrayLiteral("{}");
    }
    /// The object to be changed in place, which gives up the text.
    QJsonObject &edit();

    /// @{ As those of QJsonObject.
    bool isEmpty() const { return holdsNothing() || object().isEmpty(); }
    int size() const { return object().size(); }
    int count() const { return size(); }
    QStringList keys() const { return object().keys(); }
    template <class Key>
    bool contains(const Key &key) const {
        return object().contains(key);
    }
    template <class Key>
    QJsonValue value(const Key &key) const {
        return object().value(key);
    }
    template <class Key>
    QJsonValue operator[](const Key &key) const {
        return object()[key];
    }
    /// A member that reads as its value does; only an assignment changes the object, and gives up the text.
    class Member : public QJsonValue {
    public:
        Member(const Member &) = default;
        ~Member() = default;
        Member &operator=(const QJsonValue &value) {
            QJsonValue::operator=(value);
            mOwner.insert(mKey, value);
            return *this;
        }
        Member &operator=(const Member &other) { return *this = static_cast<const QJsonValue &>(other); }

    private:
        friend class StoredJson;
        Member(StoredJson &owner, const QString &key)
            : QJsonValue(owner.object().value(key)), mOwner(owner), mKey(key) {}

        StoredJson &mOwner;
        QString mKey;
    };
    template <class Key>
    Member operator[](const Key &key) {
        if constexpr (std::is_same_v<Key, QStringView>)
            return Member(*this, key.toString());
        else
            return Member(*this, QString(key));
    }
    template <class Key>
    void insert(const Key &key, const QJsonValue &member) {
        edit().insert(key, member);
    }
    template <class Key>
    void remove(const Key &key) {
        edit().remove(key);
    }
    template <class Key>
    QJsonValue take(const Key &key) {
        return edit().take(key);
    }
    const_iterator begin() const { return object().begin(); }
    const_iterator end() const { return object().end(); }
    const_iterator constBegin() const { return object().constBegin(); }
    const_iterator constEnd() const { return object().constEnd(); }
    template <class Key>
    const_iterator find(const Key &key) const {
        return object().constFind(key);
    }
    /// @}

    /// @{ Values are equal when their objects are.
    friend bool operator==(const StoredJson &a, const StoredJson &b) {
        return (!a.mText.isEmpty() && a.mText == b.mText) || a.object() == b.object();
    }
    friend bool operator==(const StoredJson &a, const QJsonObject &b) { return a.object() == b; }
    friend bool operator==(const QJsonObject &a, const StoredJson &b) { return a == b.object(); }
    friend bool operator!=(const StoredJson &a, const StoredJson &b) { return !(a == b); }
    friend bool operator!=(const StoredJson &a, const QJsonObject &b) { return !(a == b); }
    friend bool operator!=(const QJsonObject &a, const StoredJson &b) { return !(a == b); }
    /// @}
    friend QDebug operator<<(QDebug debug, const StoredJson &value) { return debug << value.object(); }

private:
    void read() const;

    QByteArray mText;
    mutable QJsonObject mObject;
    mutable bool mIsUnread = false; ///< the text has not become the object yet
};

Q_DECLARE_METATYPE(StoredJson)
