#include "tools/sumo/kept/KeptList.h"

#include "tools/sumo/kept/Packed.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace moratools {

namespace {

// Large enough for packing to find repetitions, small enough to be parsed without a thought of memory.
constexpr int kPartBytes = 1024 * 1024;

QByteArray closed(const QByteArray &part) {
    return packed('[' + part + ']').toLatin1();
}

} // namespace

void KeptList::add(const KeptEntry &entry) {
    QJsonObject json{{QStringLiteral("e"), entry.element.toJson()}};
    if (!entry.of.isEmpty())
        json.insert(QStringLiteral("of"), entry.of);
    if (!mOpen.isEmpty())
        mOpen += ',';
    mOpen += QJsonDocument(json).toJson(QJsonDocument::Compact);
    if (mOpen.size() < kPartBytes)
        return;
    mParts.push_back(closed(mOpen));
    mOpen.clear();
}

void KeptList::forEach(const std::function<void(KeptEntry)> &visit) const {
    const auto visitPart = [&visit](const QByteArray &text) {
        const QJsonArray entries = QJsonDocument::fromJson(text).array();
        for (const QJsonValue &entry : entries) {
            KeptElement element = KeptElement::fromJson(entry[QLatin1String("e")].toArray());
            if (!element.name.isEmpty())
                visit({std::move(element), entry[QLatin1String("of")].toString()});
        }
    };
    for (const QByteArray &part : mParts)
        visitPart(unpacked(QString::fromLatin1(part)));
    if (!mOpen.isEmpty())
        visitPart('[' + mOpen + ']');
}

QJsonArray KeptList::toJson() const {
    QJsonArray parts;
    for (const QByteArray &part : mParts)
        parts.append(QString::fromLatin1(part));
    if (!mOpen.isEmpty())
        parts.append(QString::fromLatin1(closed(mOpen)));
    return parts;
}

KeptList KeptList::fromJson(const QJsonValue &json) {
    KeptList list;
    const QJsonArray parts = json.isString() ? QJsonArray{json} : json.toArray();
    for (const QJsonValue &part : parts) {
        if (part.isString())
            list.mParts.push_back(part.toString().toLatin1());
    }
    return list;
}

} // namespace moratools
