#include "store/bulk/StoredWord.h"

#include "model/SpecialWords.h"

#include <algorithm>

namespace storedword {

namespace {

bool shows(const QString &kept, const QString &shown) {
    return !kept.isEmpty() && gSpecialWords.trEnToZh(kept) == shown;
}

} // namespace

QString kept(const QString &stored, const QString &shown) {
    return gSpecialWords.trZhToEn(shown) == stored ? QString() : stored;
}

QString of(const QString &shown, const QString &kept) {
    return shows(kept, shown) ? kept : gSpecialWords.trZhToEn(shown);
}

QString of(const QString &shown, const QStringList &kept, int place) {
    if (shows(kept.value(place), shown))
        return kept.at(place);
    const auto other = std::find_if(kept.cbegin(), kept.cend(),
                                    [&shown](const QString &word) { return shows(word, shown); });
    return other != kept.cend() ? *other : gSpecialWords.trZhToEn(shown);
}

} // namespace storedword
