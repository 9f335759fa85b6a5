#include "tools/differences/References.h"

#include "tools/rows/FormatSchema.h"

namespace moratools {

QString columnOf(const catalogue::Table &table, const catalogue::Reference &reference) {
    return formatName(QLatin1String(table.name), QLatin1String(reference.column));
}

RowId referredBy(const catalogue::Table &table, const catalogue::Reference &reference, const RowValues &row) {
    const QVariant id = row.value(columnOf(table, reference));
    if (reference.bond == catalogue::Bond::HostNumber || id.userType() != QMetaType::LongLong ||
        id.toLongLong() == 0)
        return {nullptr, 0};
    // A change need not say what the road is: most often it is a link.
    const auto valueOf = [&](const char *column) {
        const QVariant value = row.value(formatName(QLatin1String(table.name), QLatin1String(column)));
        return value.isNull() && column == reference.roadType ? QVariant(QStringLiteral("link")) : value;
    };
    const char *road = reference.saysConnector(valueOf) ? "Connector" : "Link";
    return {catalogue::find(QLatin1String(reference.table ? reference.table : road)), id.toLongLong()};
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
