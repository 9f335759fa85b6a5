#include "StoredJson.h"

#include <QJsonDocument>

StoredJson StoredJson::fromText(const QByteArray &text) {
    StoredJson value;
    value.mText = text;
    value.mIsUnread = !text.isEmpty();
    return value;
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
