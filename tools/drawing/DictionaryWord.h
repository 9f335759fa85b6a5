#pragma once

#include "model/SpecialWords.h"

namespace moratools {

/// Whether `word`, shown by a host in either language, is the entry `key` of the dictionary, a Chinese word.
inline bool isEntry(const QString &word, const QString &key) {
    static const SpecialWords english = [] {
        SpecialWords words;
        words.setLangIsNotZh(true);
        words.setDbIsEnglish(true);
        return words;
    }();
    return word == key || word == english.getWord(key);
}

} // namespace moratools
