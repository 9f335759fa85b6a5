#include "tools/differences/References.h"

#include "tools/rows/FormatSchema.h"

#include <algorithm>

namespace moratools {

namespace {

QVariant valueOf(const catalogue::Table &table, const char *column, const RowValues &row) {
    return row.value(formatName(QLatin1String(table.name), QLatin1String(column)));
}

bool saysConnector(const catalogue::Table &table, const catalogue::Reference &reference,
                   const RowValues &row) {
    if (reference.roadType) {
        const QVariant type = valueOf(table, reference.roadType, row);
        return type.isValid() && !type.toString().startsWith(QLatin1Char('l'), Qt::CaseInsensitive);
    }
    return std::any_of(reference.lanes.begin(), reference.lanes.end(), [&](const char *column) {
        const QVariant lane = valueOf(table, column, row);
        return lane.isValid() && lane.toLongLong() >= reference.firstOfConnector;
    });
}

} // namespace

QString columnOf(const catalogue::Table &table, const catalogue::Reference &reference) {
    return formatName(QLatin1String(table.name), QLatin1String(reference.column));
}

RowId referredBy(const catalogue::Table &table, const catalogue::Reference &reference, const RowValues &row) {
    const QVariant id = row.value(columnOf(table, reference));
    if (reference.bond == catalogue::Bond::HostNumber || id.userType() != QMetaType::LongLong ||
        id.toLongLong() == 0)
        return {nullptr, 0};
    const char *road = saysConnector(table, reference, row) ? "Connector" : "Link";
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
