#include "tools/rows/Digest.h"

#include "store/catalogue/Catalogue.h"
#include "tools/rows/CanonicalRows.h"

namespace moratools {

namespace {

QString digestOf(const NetworkRows &rows, Covered covered, Translation *words, const Progress &progress) {
    NetworkDigest digest;
    const std::vector<catalogue::Table> &tables = catalogue::tables();
    for (std::size_t i = 0; i < tables.size(); ++i) {
        reportShare(progress, double(i) / double(tables.size()));
        CanonicalRows table(rows, tables[i], covered, words);
        while (table.next())
            digest.add(tables[i], table.group());
    }
    return digest.result();
}

} // namespace

QString digestOf(const StoreReader &store, const StoreReader::Network &network, Covered covered,
                 const Progress &progress) {
    return digestOf(store.rowsOf(network), covered, nullptr, progress);
}

QString digestOf(const NetworkRows &rows, Translation &words) {
    return digestOf(rows, Covered::AllOfIt, &words, {});
}

} // namespace moratools
