#pragma once

#include "MoraStoreExport.h"

#include <QMap>
#include <QString>
#include <QStringList>

/// The dictionary of the fixed vocabulary (kinds of lanes, links, vehicles and stops, signal colours, ...).
/// The host's display words are Chinese; a store holds either these or their English equivalents. Several
/// display words share a stored word, so that a synonym that was stored can come back as another one.
class MORASTORE_EXPORT SpecialWords {
public:
    SpecialWords();

    /// The caller follows with initVars() when the cached words are to follow too.
    void setLangIsNotZh(bool isNotZh) { langIsNotZh = isNotZh; }
    void setDbIsEnglish(bool isEnglish) { dbIsEnglish = isEnglish; }

    /// Recomputes the cached words.
    void initVars();

    /// The word to use for the vocabulary entry `key` (a Chinese display word): English when neither the
    /// store nor the host is Chinese, else the key itself.
    QString getWord(const QString &key) const;
    /// Display word to stored word: what an insert writes.
    QString trZhToEn(const QString &word) const;
    /// Stored word to display word: what a select hands out. Among synonyms the first in the order of keys.
    QString trEnToZh(const QString &word) const;
    /// What trEnToZh() shows as `shown`: an English store gets the English word whatever the host's language
    /// is. Whole saves write it, while single inserts of a Chinese host write the display word.
    QString storedWord(const QString &shown) const;

    bool langIsNotZh = false; ///< the host's language is not Chinese
    bool dbIsEnglish = false; ///< the open store holds English words

    /// getWord() of each of the 46 keys, in the order of the vocabulary, as of the last initVars().
    QStringList mlWord;

private:
    QString english(const QString &word) const;

    QMap<QString, QString> mEnglishByChinese;
};

/// The dictionary of the process's store, which entity defaults use, too.
extern MORASTORE_EXPORT SpecialWords &gSpecialWords;
