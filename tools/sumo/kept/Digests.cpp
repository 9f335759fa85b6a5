#include "tools/sumo/kept/Digests.h"

#include "model/Description.h"
#include "model/NetKinds.h"
#include "model/SpecialWords.h"
#include "tools/sumo/kept/KeptElement.h"
#include "tools/sumo/kept/Packed.h"

#include <QSet>

#include <algorithm>

namespace moratools {

namespace {

/// A word of the fixed vocabulary in English, whatever the language of store and host; another text as it is.
QString english(const QString &word) {
    static const SpecialWords words = [] {
        SpecialWords ofAnEnglishStore;
        ofAnEnglishStore.setDbIsEnglish(true);
        return ofAnEnglishStore;
    }();
    return words.storedWord(word);
}

/// Numbers that mean nothing but the object itself.
bool isOwnNumber(const QString &field) {
    static const QSet<QString> fields{
        QStringLiteral("signalGroupID"),     QStringLiteral("signalPhaseID"),
        QStringLiteral("departurePointID"),  QStringLiteral("departureIntervalD"),
        QStringLiteral("deciPointID"),       QStringLiteral("RoutingFLowRatioID"),
        QStringLiteral("queueCounterID"),    QStringLiteral("detectorId"),
        QStringLiteral("collecterID"),       QStringLiteral("busLineID"),
        QStringLiteral("stationLineID"),     QStringLiteral("passengerArrivingID"),
        QStringLiteral("accidentZoneId"),    QStringLiteral("roadWorkZoneId"),
        QStringLiteral("reduceSpeedAreaID"), QStringLiteral("intervalID"),
        QStringLiteral("vehicleConsCode"),
    };
    return fields.contains(field);
}

/// Lists whose order means something.
bool isSequence(const QString &field, const QVariantList &list) {
    return field == QLatin1String("colors") || list.isEmpty() ||
           list.first().userType() != QMetaType::QVariantMap;
}

QByteArray joined(std::vector<QByteArray> texts, bool inOrder) {
    if (!inOrder)
        std::sort(texts.begin(), texts.end());
    QByteArray all = "[";
    for (const QByteArray &text : texts)
        all += text + ',';
    return all + ']';
}

/// The length goes first, so that no text can look like another and what follows it.
QByteArray quoted(const QString &text) {
    const QByteArray bytes = text.toUtf8();
    return QByteArray::number(bytes.size()) + ':' + bytes;
}

QString keyOf(const char *table, const QString &id) {
    return QLatin1String(table) + QLatin1Char('\n') + id;
}

/// The table of the objects that are made of such an element alone; null for other elements.
const char *tableOf(const QString &element) {
    static const QHash<QString, const char *> tables{
        {QStringLiteral("vType"), "VehicleType"},
        {QStringLiteral("vTypeDistribution"), "VehicleConstitutent"},
        {QStringLiteral("e1Detector"), "VehicleDrivInfoCollecter"},
        {QStringLiteral("inductionLoop"), "VehicleDrivInfoCollecter"},
        {QStringLiteral("instantInductionLoop"), "VehicleDrivInfoCollecter"},
        {QStringLiteral("e2Detector"), "VehicleQueueCounter"},
        {QStringLiteral("laneAreaDetector"), "VehicleQueueCounter"},
        {QStringLiteral("e3Detector"), "VehicleTravelDetector"},
        {QStringLiteral("entryExitDetector"), "VehicleTravelDetector"},
        {QStringLiteral("busStop"), "BusStation"},
        {QStringLiteral("trainStop"), "BusStation"},
        {QStringLiteral("variableSpeedSign"), "ReduceSpeedArea"},
        {QStringLiteral("rerouter"), "RoadWorkZone"},
    };
    return tables.value(element, nullptr);
}

} // namespace

Digests::Digests(const NetLists &network) : mNetwork(network) {
    QHash<long, QString> roads;
    for (const auto &connector : network.connectors)
        roads.insert(connector->connID, connector->connName);
    for (const auto &link : network.links)
        roads.insert(link->linkID, link->linkName);
    for (const char *field :
         {"linkID", "roadID", "roadId", "startRoadId", "teminalRoadId", "links", "roads", "linkChains"})
        mNameOf.insert(QLatin1String(field), roads);
    enterNames("vehiCons", network.traffic.compositions);
    enterNames("busStationID", network.traffic.busStations);
    enterNames("vehicleTypeCode", network.traffic.vehicleTypes);
    // Two routes of a point may have one name: their links tell them apart.
    for (const auto &point : network.traffic.decisionPoints) {
        for (const Routing *route : point->mlRouting) {
            QStringList names{route->routingName};
            for (const QList<Link *> &chain : route->mlLinkChain) {
                for (const Link *link : chain)
                    names.append(link->linkName);
            }
            mNameOf[QStringLiteral("routingID")].insert(route->routingID, names.join(QLatin1Char('\n')));
        }
    }
    enterTexts(network.traffic.vehicleTypes);
    enterTexts(network.traffic.compositions);
    enterTexts(network.traffic.signalGroups);
    enterTexts(network.traffic.collectors);
    enterTexts(network.traffic.queueCounters);
    enterTexts(network.traffic.travelDetectors);
    enterTexts(network.traffic.busStations);
    enterTexts(network.traffic.speedAreas);
    enterTexts(network.traffic.roadWorkZones);
}

template <class T>
void Digests::enterNames(const char *field, const Objects<T> &objects) {
    QHash<long, QString> &names = mNameOf[QLatin1String(field)];
    for (const auto &object : objects)
        names.insert(NetKind<T>::idOf(*object), english(NetKind<T>::nameOf(*object)));
}

/// An import calls what it makes of an element by the id, and by the id and what follows a blank where it makes
/// several objects.
template <class T>
void Digests::enterTexts(const Objects<T> &objects) {
    for (const auto &object : objects) {
        const QString name = english(NetKind<T>::nameOf(*object));
        const QByteArray text = textOf(describe(*object).fields);
        mTexts[keyOf(NetKind<T>::table, name)].push_back(text);
        if (const int blank = name.indexOf(QLatin1Char(' ')); blank > 0)
            mTexts[keyOf(NetKind<T>::table, name.left(blank))].push_back(text);
    }
}

QByteArray Digests::textOf(const QVariantMap &fields) const {
    QByteArray text = "{";
    for (auto field = fields.cbegin(); field != fields.cend(); ++field) {
        if (!isOwnNumber(field.key()))
            text += field.key().toUtf8() + '=' + textOf(field.key(), field.value()) + ';';
    }
    return text + '}';
}

QByteArray Digests::textOf(const QString &field, const QVariant &value) const {
    const auto names = mNameOf.constFind(field);
    switch (value.userType()) {
    case QMetaType::QVariantMap:
        return textOf(value.toMap());
    case QMetaType::QVariantList: {
        const QVariantList list = value.toList();
        std::vector<QByteArray> texts;
        texts.reserve(std::size_t(list.size()));
        for (const QVariant &entry : list)
            texts.push_back(textOf(field, entry));
        return joined(std::move(texts), isSequence(field, list));
    }
    case QMetaType::QString:
        return quoted(english(value.toString()));
    case QMetaType::Double:
    case QMetaType::Float:
        return QByteArray::number(value.toDouble() + 0.0, 'g', 17);
    default:
        return names == mNameOf.constEnd() ? value.toString().toUtf8()
                                           : quoted(names->value(long(value.toLongLong())));
    }
}

template <class T>
QByteArray Digests::textOf(const Objects<T> &objects) const {
    std::vector<QByteArray> texts;
    texts.reserve(objects.size());
    for (const auto &object : objects)
        texts.push_back(textOf(describe(*object).fields));
    return joined(std::move(texts), false);
}

/// Of the objects that were made of the element with that id; empty where there are none.
QByteArray Digests::textOf(const char *table, const QString &id) const {
    const auto known = mTexts.constFind(keyOf(table, english(id)));
    return known == mTexts.constEnd() ? QByteArray() : joined(*known, false);
}

QString Digests::of(const KeptElement &element) const {
    const QString *id = element.attribute(QStringLiteral("id"));
    if (!id)
        return {};
    QByteArray text;
    if (const char *table = tableOf(element.name))
        text = textOf(table, *id);
    if (element.name == QLatin1String("tlLogic")) {
        const QString *programID = element.attribute(QStringLiteral("programID"));
        const QString both = QStringLiteral("%1/%2").arg(*id, programID ? *programID : QStringLiteral("0"));
        text = textOf("SignalGroup", *id) + textOf("SignalGroup", both);
    }
    for (const KeptElement &child : element.children)
        text += of(child).toUtf8();
    return text.isEmpty() ? QString() : shortDigestOf(text);
}

bool Digests::isMadeAlone(const QString &elementName) {
    return tableOf(elementName) || elementName == QLatin1String("tlLogic");
}

QString Digests::of(const SignalGroup &group) const {
    return shortDigestOf(textOf(describe(group).fields));
}

QString Digests::demand() const {
    const TrafficObjects &traffic = mNetwork.traffic;
    return shortDigestOf(textOf(traffic.departurePoints) + textOf(traffic.decisionPoints) +
                         textOf(traffic.compositions) + textOf(traffic.busLines) +
                         textOf(traffic.accidentZones));
}

} // namespace moratools
