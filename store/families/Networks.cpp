#include "store/families/Networks.h"

#include "model/Description.h"
#include "model/Net.h"
#include "store/core/Columns.h"
#include "store/core/OperationTransaction.h"
#include "store/core/Query.h"
#include "store/core/StorableValue.h"

namespace networks {

namespace {

constexpr Sql kSameRecord = {"select * from Net where name = '%1'", "select * from Net where NetId = %0"};

constexpr const char *kInsert =
    "insert into Net(NetId, name, centerX, centerY, sourceType, backgroundUrl, otherAttrsJson) values(:NetId, :name, :centerX, :centerY, :sourceType, :backgroundUrl, :otherAttrsJson)";
constexpr const char *kInsertWithoutCenter =
    "insert into Net(NetId, name, sourceType, backgroundUrl, otherAttrsJson) values(:NetId, :name, :sourceType, :backgroundUrl, :otherAttrsJson)";
constexpr const char *kInsertSeveralNets =
    "insert into Net(NetId, name, centerX, centerY, sourceType, backgroundUrl, otherAttrsJson, isDefault) values(:NetId, :name, :centerX, :centerY, :sourceType, :backgroundUrl, :otherAttrsJson, :isDefault)";

constexpr const char *kUpdate =
    "update Net set name = :name, sourceUrl = :sourceUrl, sourceType = :sourceType, backgroundUrl = :backgroundUrl, centerX = :centerX, centerY = :centerY, caption = :caption, otherAttrsJson = :otherAttrsJson, isDefault = :isDefault where NetId = %0";
constexpr const char *kUpdateWithoutCaption =
    "update Net set name = :name, sourceUrl = :sourceUrl, sourceType = :sourceType, backgroundUrl = :backgroundUrl, centerX = :centerX, centerY = :centerY, otherAttrsJson = :otherAttrsJson, isDefault = :isDefault where NetId = %0";

constexpr const char *kSelectAll = "select * from Net order by NetId";
/// Captions, which some stores have no column for, and attributes may be long.
constexpr Sql kSelectBrief = {
    kSelectAll,
    "select NetId, name, sourceUrl, sourceType, backgroundUrl, centerX, centerY, isDefault from Net order by NetId"};

constexpr Sql kBackgroundMap = {"select backgroundMap from Configuration",
                                "select backgroundMap from Configuration where NetId = %0"};

/// Names are unique in a store of one network, ids in generation 6.
std::optional<bool> isTaken(const Store &store, const Record &record) {
    Query same(store, store.hasSeveralNets() ? store.text(kSameRecord, {})
                                             : store.text(kSameRecord).arg(quoted(record.name)));
    return same.returnsRow();
}

QString nameToStore(const QString &name) {
    return name.isEmpty() ? QStringLiteral("MoraSim") : name;
}

/// But for the attributes, which a record holds as an object.
constexpr std::tuple kColumns = {
    Column{":NetId", &NetRecord::netId, "netId"},
    Column{":name", &NetRecord::name},
    Column{":sourceType", &NetRecord::sourceType},
    Column{":sourceUrl", &NetRecord::sourceUrl},
    Column{":backgroundUrl", &NetRecord::backgroundUrl},
    Column{":centerX", &NetRecord::centerX},
    Column{":centerY", &NetRecord::centerY},
    Column{":caption", &NetRecord::caption},
    Column{":isDefault", &NetRecord::isDefault},
};

/// Columns that older stores lack read as their defaults.
NetRecord readRecord(Query &row) {
    NetRecord record;
    readAll(row, kColumns, record);
    record.otherAttrsJson = row.json("otherAttrsJson");
    return record;
}

/// Makes the current row of @p row the current network.
Net *loadRow(Query &row) {
    row.store().net().loadRecord(readRecord(row));
    return &row.store().net();
}

Net *loadFirst(const Store &store, const QString &sql) {
    Query row(store, sql);
    return row.execAndNext() ? loadRow(row) : nullptr;
}

bool hasStorableAttributes(const Store &store, const Record &record) {
    return record.attributesObjection.isEmpty() ||
           store.fail({}, QStringLiteral("The value of otherAttrsJson cannot be stored: it ") +
                              record.attributesObjection);
}

} // namespace

void Record::setAttributes(const StoredJson &attributes) {
    const QByteArray text = attributes.text();
    otherAttrsJson = QString::fromUtf8(text);
    attributesObjection = storablevalue::objection(attributes, text, true);
}

Record recordOf(const NetRecord &net) {
    Record record;
    record.id = net.netId;
    record.name = net.name;
    record.sourceUrl = net.sourceUrl;
    record.sourceType = net.sourceType;
    record.backgroundUrl = net.backgroundUrl;
    record.centerX = net.centerX;
    record.centerY = net.centerY;
    record.caption = net.caption;
    record.setAttributes(StoredJson(net.otherAttrsJson));
    record.isDefault = net.isDefault;
    return record;
}

bool insertNetwork(const Store &store, const Record &record, bool useTransaction) {
    if (!store.isUsable() || !hasStorableAttributes(store, record) || isTaken(store, record).value_or(true))
        return false;
    OperationTransaction transaction(store, useTransaction);
    const bool hasCenter = store.hasSeveralNets() || store.hasColumn("Net", "centerX");
    Query insert(store, store.hasSeveralNets() ? kInsertSeveralNets
                        : hasCenter            ? kInsert
                                               : kInsertWithoutCenter);
    insert.bind(":NetId", record.id).bind(":name", nameToStore(record.name));
    if (hasCenter)
        insert.bind(":centerX", record.centerX).bind(":centerY", record.centerY);
    insert.bind(":sourceType", record.sourceType)
        .bind(":backgroundUrl", record.backgroundUrl)
        .bind(":otherAttrsJson", record.otherAttrsJson);
    if (store.hasSeveralNets())
        insert.bindFlag(":isDefault", record.isDefault);
    return transaction.commitOrRecord(insert.exec());
}

bool updateNetwork(const Store &store, const Record &record, bool useTransaction) {
    if (!store.isUsable() || !hasStorableAttributes(store, record))
        return false;
    OperationTransaction transaction(store, useTransaction);
    const bool hasCaption = store.hasColumn("Net", "caption");
    Query update(store, hasCaption ? kUpdate : kUpdateWithoutCaption, {store.netId()});
    update.bind(":name", nameToStore(record.name))
        .bind(":sourceUrl", record.sourceUrl)
        .bind(":sourceType", record.sourceType)
        .bind(":backgroundUrl", record.backgroundUrl)
        .bind(":centerX", record.centerX)
        .bind(":centerY", record.centerY)
        .bind(":otherAttrsJson", record.otherAttrsJson)
        .bindFlag(":isDefault", record.isDefault);
    if (hasCaption)
        update.bind(":caption", record.caption);
    return transaction.commitOrRecord(update.exec());
}

bool changeNetwork(const Store &store, const NetRecord &now, const NetRecord &before) {
    const Record record = recordOf(now);
    const QVariantMap fields = describeAll(kColumns, now);
    const QVariantMap fieldsBefore = describeAll(kColumns, before);
    if (now.netId != before.netId)
        return store.fail(
            {},
            QStringLiteral("Network %1 keeps its id: save it as another network instead.").arg(before.netId));
    QStringList changed;
    for (auto field = fields.cbegin(); field != fields.cend(); ++field) {
        if (!isSameField(field.value(), fieldsBefore.value(field.key())))
            changed.append(field.key());
    }
    if (now.otherAttrsJson != before.otherAttrsJson)
        changed.append(QStringLiteral("otherAttrsJson"));
    if (changed.isEmpty())
        return true;
    if (!hasStorableAttributes(store, record))
        return false;
    QStringList assignments;
    for (const QString &column : qAsConst(changed)) {
        if (!store.hasSeveralNets() && !store.hasColumn("Net", column.toLatin1().constData()))
            return !store.isGivenUp() &&
                   store.fail({}, QStringLiteral("A store of this version has no place for %1 of a network.")
                                      .arg(column));
        assignments.append(QStringLiteral("%1 = :%1").arg(column));
    }
    Query update(store, QStringLiteral("update Net set %1 where NetId = %2")
                            .arg(assignments.join(QLatin1String(", ")), QString::number(before.netId)));
    for (const QString &column : qAsConst(changed)) {
        const QByteArray placeholder = QByteArray(":") + column.toLatin1();
        if (column == QLatin1String("name"))
            update.bind(placeholder.constData(), nameToStore(now.name));
        else if (column == QLatin1String("isDefault"))
            update.bindFlag(placeholder.constData(), now.isDefault);
        else if (column == QLatin1String("otherAttrsJson"))
            update.bind(placeholder.constData(), record.otherAttrsJson);
        else
            update.bindValue(placeholder.constData(), fields.value(column));
    }
    return update.exec();
}

Net *loadNetworkById(const Store &store) {
    return loadFirst(store, fillNumber(QStringLiteral("select * from Net where NetId = %1"), store.netId()));
}

Net *loadNetworkByName(const Store &store, const QString &name) {
    if (name.isEmpty())
        return loadFirst(store, QStringLiteral("select * from Net order by netId"));
    return loadFirst(store, QStringLiteral("select * from Net where name = '%1'").arg(quoted(name)));
}

std::optional<bool> networkExists(const Store &store) {
    return Query(store, "select * from Net where NetId = %1", {store.netId()}).returnsRow();
}

bool requireNetwork(const Store &store) {
    if (store.isGivenUp() || !store.isUsable())
        return false;
    if (!store.hasSeveralNets())
        return true;
    if (store.netId() == 0)
        return store.fail({}, QStringLiteral("No network is current: load one, or name it"), 0,
                          FailureKind::NotFound);
    const auto exists = networkExists(store);
    if (exists.value_or(true))
        return exists.has_value();
    return store.fail(
        {}, QStringLiteral("The store has no network %1: write its record first").arg(store.netId()),
        store.netId(), FailureKind::NotFound);
}

long largestNetworkId(const Store &store) {
    Query largest(store, "select max(NetId) from Net");
    return largest.execAndNext() ? largest.firstId() : 0;
}

std::optional<bool> isAnyNetworkThere(const Store &store) {
    return Query(store, kSelectAll).returnsRow();
}

QList<Net> readNetworks(const Store &store) {
    QList<Net> nets;
    Query rows(store, kSelectAll);
    if (!rows.exec())
        return nets;
    while (rows.next()) {
        Net net;
        net.netId = rows.id("NetId");
        net.name = rows.text("name");
        net.otherAttrsJson = rows.json("otherAttrsJson");
        nets.append(net);
    }
    return nets;
}

QList<NetRecord> readRecords(const Store &store) {
    QList<NetRecord> records;
    Query rows(store, kSelectAll);
    if (!rows.exec())
        return {};
    while (rows.next())
        records.append(readRecord(rows));
    return rows.isComplete() ? records : QList<NetRecord>();
}

QList<NetRecord> readBriefRecords(const Store &store) {
    QList<NetRecord> records;
    Query rows(store, kSelectBrief);
    if (!rows.exec())
        return records;
    while (rows.next())
        records.append(readRecord(rows));
    return records;
}

QList<QPair<long, QString>> readNames(const Store &store) {
    QList<QPair<long, QString>> names;
    Query rows(store, "select NetId, name from Net order by NetId");
    if (!rows.exec())
        return names;
    while (rows.next())
        names.append({rows.firstId(), rows.text("name")});
    return names;
}

QByteArray readBackgroundMap(const Store &store) {
    Query map(store, kBackgroundMap);
    return map.execAndNext() ? map.value("backgroundMap").toByteArray() : QByteArray();
}

} // namespace networks

Description describe(const NetRecord &record) {
    QVariantMap fields = describeAll(networks::kColumns, record);
    fields.insert(QStringLiteral("otherAttrs"), QVariant::fromValue(StoredJson(record.otherAttrsJson)));
    return {record.netId, record.name, fields};
}
