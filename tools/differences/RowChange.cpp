#include "tools/differences/RowChange.h"

namespace moratools {

std::vector<const char *> identityColumns(const catalogue::Table &table, bool hasId) {
    if (!table.identity.empty())
        return table.identity;
    return table.id && hasId ? std::vector<const char *>{table.id} : table.key;
}

} // namespace moratools
