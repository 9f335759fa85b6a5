#include "store/ids/IdSlots.h"

#include "store/ids/Identifiers.h"

#include <algorithm>
#include <cstring>
#include <unordered_set>

void IdSlots::add(const char *table, long &id) {
    auto of = std::find_if(mTables.begin(), mTables.end(),
                           [table](const OfTable &known) { return std::strcmp(known.table, table) == 0; });
    if (of == mTables.end())
        of = mTables.insert(mTables.end(), {table, {}});
    of->ids.push_back(&id);
}

bool IdSlots::fill(const Store &store) const {
    std::vector<std::pair<long *, long>> given;
    for (const OfTable &of : mTables) {
        std::unordered_set<long> brought;
        std::unordered_set<const long *> seen;
        std::vector<long *> missing;
        for (long *id : of.ids) {
            if (*id != 0)
                brought.insert(*id);
            else if (seen.insert(id).second)
                missing.push_back(id);
        }
        QList<long> drawn;
        if (!identifiers::draw(store, QLatin1String(of.table), brought, int(missing.size()), drawn))
            return false;
        for (std::size_t i = 0; i < missing.size(); ++i)
            given.emplace_back(missing[i], drawn.at(int(i)));
    }
    for (const auto &[id, value] : given)
        *id = value;
    for (const auto &step : mAfterwards)
        step();
    return true;
}
