#include "tools/checks/Checked.h"

namespace moratools {

bool isEmpty(const StoreReader &rows) {
    if (rows.networks().isEmpty())
        return true;
    const StoreTable *records = rows.table(QStringLiteral("Net"));
    const StoreTable *links = rows.table(QStringLiteral("Link"));
    return !rows.hasSeveralNetworks() && records && links &&
           rows.count(*records, rows.networks().first()) == 0 &&
           rows.count(*links, rows.networks().first()) == 0;
}

} // namespace moratools
