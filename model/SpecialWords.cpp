#include "SpecialWords.h"

#include "Words.h"

#include <QSet>

namespace Words {

bool Word::names(const QString &text) const {
    return text == QStringView(chinese) || text == QStringView(english) ||
           (synonym && text == QStringView(synonym));
}

bool isKnown(const QString &text) {
    static const QSet<QString> words = [] {
        QSet<QString> all;
        for (const Word &word : kAll)
            all << word << word.inEnglish();
        return all;
    }();
    return words.contains(text);
}

} // namespace Words

SpecialWords::SpecialWords() {
    for (const Words::Word &word : Words::kAll)
        mEnglishByChinese.insert(word, word.inEnglish());
    initVars();
}

void SpecialWords::initVars() {
    mlWord.clear();
    for (const Words::Word &word : Words::kAll)
        mlWord.append(getWord(word));
}

QString SpecialWords::getWord(const QString &key) const {
    return dbIsEnglish && langIsNotZh ? english(key) : key;
}

QString SpecialWords::trZhToEn(const QString &word) const {
    return dbIsEnglish && langIsNotZh ? english(word) : word;
}

QString SpecialWords::trEnToZh(const QString &word) const {
    // A Chinese store holds display words already, and a host in another language shows the stored ones.
    return dbIsEnglish && !langIsNotZh ? mEnglishByChinese.key(word, word) : word;
}

QString SpecialWords::storedWord(const QString &shown) const {
    return dbIsEnglish ? english(shown) : shown;
}

QString SpecialWords::english(const QString &word) const {
    return mEnglishByChinese.value(word, word);
}
