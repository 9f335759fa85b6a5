#include "tools/rows/RowsTakenBack.h"

#include <algorithm>

namespace moratools {

std::vector<QByteArray> RowsTakenBack::Group::before(const std::vector<QByteArray> &now) const {
    std::vector<QByteArray> rows;
    QMap<QByteArray, int> left = more;
    for (const QByteArray &row : now) {
        const auto change = left.find(row);
        if (change != left.end() && *change < 0)
            ++*change;
        else
            rows.push_back(row);
    }
    for (auto change = left.cbegin(); change != left.cend(); ++change) {
        if (*change > 0)
            rows.insert(rows.end(), std::size_t(*change), change.key());
    }
    std::sort(rows.begin(), rows.end());
    return rows;
}

std::vector<RowsTakenBack::Group> RowsTakenBack::groups(const catalogue::Table &entry) const {
    std::vector<Group> groups;
    const auto changed = mTables.find(&entry);
    if (changed == mTables.end())
        return groups;
    for (const auto &[place, more] : changed->second.rows)
        groups.push_back({place, more});
    std::sort(groups.begin(), groups.end(), [](const Group &one, const Group &other) {
        return CanonicalRows::compare(one.place, other.place) < 0;
    });
    return groups;
}

void RowsTakenBack::note(const catalogue::Table &entry, const ValueOf &valueOf, int more) {
    const StoreTable *table = mRows.table(QLatin1String(entry.name));
    auto changed = mTables.find(&entry);
    if (changed == mTables.end())
        changed =
            mTables.emplace(&entry, Changed{CanonicalForm(table, entry, Covered::AllOfIt, true), {}}).first;
    const CanonicalForm::Row row =
        changed->second.form.rowOf([&](int column) { return valueOf(table->columns[column]); }, &mWords);
    changed->second.rows[row.place][row.bytes] += more;
}

} // namespace moratools
