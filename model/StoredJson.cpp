#include "StoredJson.h"

#include <QJsonDocument>

StoredJson StoredJson::fromText(const QByteArray &text) {
    StoredJson value;
    value.mText = text;
    value.mIsUnread = !text.isEmpty();
    return value;
}

QByteArray StoredJson::text() const {
    return hasText() ? mText : QJsonDocument(mObject).toJson(QJsonDocument::Compact);
}

QJsonObject &StoredJson::edit() {
    object();
    mText.clear();
    return mObject;
}

void StoredJson::read() const {
    mIsUnread = false;
    mObject = QJsonDocument::fromJson(mText).object();
}
