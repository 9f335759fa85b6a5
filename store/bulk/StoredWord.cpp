#include "store/bulk/StoredWord.h"

#include "model/SpecialWords.h"

#include <algorithm>

namespace storedword {

namespace {

bool shows(const SpecialWords &words, const QString &kept, const QString &shown) {
    return !kept.isEmpty() && words.trEnToZh(kept) == shown;
}

} // namespace

QString kept(const SpecialWords &words, const QString &stored, const QString &shown) {
    return words.storedWord(shown) == stored ? QString() : stored;
}

QString of(const SpecialWords &words, const QString &shown, const QString &kept) {
    return shows(words, kept, shown) ? kept : words.storedWord(shown);
}

QString of(const SpecialWords &words, const QString &shown, const QStringList &kept, int place) {
    if (shows(words, kept.value(place), shown))
        return kept.at(place);
    const auto other = std::find_if(kept.cbegin(), kept.cend(),
                                    [&](const QString &word) { return shows(words, word, shown); });
    return other != kept.cend() ? *other : words.storedWord(shown);
}

} // namespace storedword
