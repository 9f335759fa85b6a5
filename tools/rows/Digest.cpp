#include "tools/rows/Digest.h"

#include "store/catalogue/Catalogue.h"
#include "tools/rows/CanonicalRows.h"
#include "tools/rows/RowsTakenBack.h"

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

TwoDigests digestsOf(const NetworkRows &rows, Translation &words, const RowsTakenBack &changes,
                     const Progress &progress) {
    enum { Before, Now, Both };
    NetworkDigest digests(Both);
    const std::vector<catalogue::Table> &tables = catalogue::tables();
    for (std::size_t i = 0; i < tables.size(); ++i) {
        reportShare(progress, double(i) / double(tables.size()));
        const std::vector<RowsTakenBack::Group> changed = changes.groups(tables[i]);
        auto change = changed.begin();
        CanonicalRows table(rows, tables[i], Covered::AllOfIt, &words);
        bool hasRows = table.next();
        while (hasRows || change != changed.end()) {
            const int order = !hasRows ? 1
                              : change == changed.end()
                                  ? -1
                                  : CanonicalRows::compare(table.place(), change->place);
            static const std::vector<QByteArray> none;
            const std::vector<QByteArray> &rowsNow = order <= 0 ? table.group() : none;
            if (order < 0) {
                digests.add(tables[i], rowsNow);
            } else {
                digests.add(tables[i], change->before(rowsNow), Before);
                digests.add(tables[i], rowsNow, Now);
                ++change;
            }
            if (order <= 0)
                hasRows = table.next();
        }
    }
    return {digests.result(Before), digests.result(Now)};
}

} // namespace moratools
