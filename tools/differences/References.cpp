#include "tools/differences/References.h"

#include "tools/rows/FormatSchema.h"

namespace moratools {

QString columnOf(const catalogue::Table &table, const catalogue::Reference &reference) {
    return formatName(QLatin1String(table.name), QLatin1String(reference.column));
}

RowId referredBy(const RowChange &change, const catalogue::Reference &reference, const RowValues &row) {
    const catalogue::Table &table = *change.table;
    const QVariant id = row.value(columnOf(table, reference));
    if (reference.bond == catalogue::Bond::HostNumber || id.userType() != QMetaType::LongLong ||
        id.toLongLong() == 0)
        return {nullptr, 0};
    if (reference.table)
        return {catalogue::find(QLatin1String(reference.table)), id.toLongLong()};
    if (const catalogue::Table *road = change.roads.value(id.toLongLong()))
        return {road, id.toLongLong()};
    return {roadBySign(reference,
                       [&](const char *column) {
                           return row.value(formatName(QLatin1String(table.name), QLatin1String(column)));
                       }),
            id.toLongLong()};
}

const catalogue::Table *roadBySign(const catalogue::Reference &reference,
                                   const std::function<QVariant(const char *)> &valueOf) {
    // Older stores need not say what the road is: most often it is a link.
    const auto said = [&](const char *column) {
        const QVariant value = valueOf(column);
        return value.isNull() && column == reference.roadType ? QVariant(QStringLiteral("link")) : value;
    };
    return catalogue::find(reference.saysConnector(said) ? QStringLiteral("Connector")
                                                         : QStringLiteral("Link"));
}

RowId idOf(const RowChange &change) {
    const bool isOne =
        change.table->id && change.key.size() == 1 && change.key.first().userType() == QMetaType::LongLong;
    return isOne ? RowId{change.table, change.key.first().toLongLong()} : RowId{nullptr, 0};
}

RowId ownerOf(const RowChange &change) {
    const catalogue::Reference *owner = change.table->owner();
    if (!owner || change.owner.userType() != QMetaType::LongLong)
        return {nullptr, 0};
    return {catalogue::find(QLatin1String(owner->table)), change.owner.toLongLong()};
}

} // namespace moratools
