#include "model/SpecialWords.h"

#include "model/Words.h"

#include <gtest/gtest.h>

namespace {

SpecialWords dictionary(bool dbIsEnglish, bool langIsNotZh) {
    SpecialWords words;
    words.setDbIsEnglish(dbIsEnglish);
    words.setLangIsNotZh(langIsNotZh);
    return words;
}

struct Translation {
    bool dbIsEnglish;
    bool langIsNotZh;
    QString word;   // of getWord
    QString stored; // of trZhToEn
    QString shown;  // of trEnToZh
};

} // namespace

TEST(SpecialWords, FlagsDecideWhichWordsAreStoredAndShown) {
    const QString red = QStringLiteral("Red");
    const QString hong = QStringLiteral("红");
    const Translation cases[] = {
        {false, false, hong, hong, red},
        {false, true, hong, hong, red},
        {true, false, hong, hong, hong},
        {true, true, red, red, red},
    };
    for (const Translation &expected : cases) {
        SCOPED_TRACE(expected.dbIsEnglish * 2 + expected.langIsNotZh);
        const SpecialWords words = dictionary(expected.dbIsEnglish, expected.langIsNotZh);
        EXPECT_EQ(words.getWord(hong), expected.word);
        EXPECT_EQ(words.trZhToEn(hong), expected.stored);
        EXPECT_EQ(words.trEnToZh(red), expected.shown);
        for (const QString &foreign : {QStringLiteral("紫"), QStringLiteral("red"), QString()}) {
            EXPECT_EQ(words.getWord(foreign), foreign);
            EXPECT_EQ(words.trZhToEn(foreign), foreign);
            EXPECT_EQ(words.trEnToZh(foreign), foreign);
        }
    }
}

TEST(SpecialWords, SynonymsShareAStoredWordAndTheFirstKeyComesBack) {
    const SpecialWords writing = dictionary(true, true);
    const SpecialWords reading = dictionary(true, false);
    // In each row the synonyms, the one that sorts first (by code point) leading.
    const QList<QPair<QString, QStringList>> synonyms = {
        {QStringLiteral("Freeway"), {QStringLiteral("高速公路"), QStringLiteral("高速路")}},
        {QStringLiteral("ArterialRoad"), {QStringLiteral("城市主干道"), QStringLiteral("城市主要干道")}},
        {QStringLiteral("SecondaryRoad"), {QStringLiteral("城市次干道"), QStringLiteral("次要干道")}},
        {QStringLiteral("MixedLane"), {QStringLiteral("机非共享"), QStringLiteral("机非共享车道")}},
        {QStringLiteral("Plane"), {QStringLiteral("大型飞机"), QStringLiteral("大飞机")}},
        {QStringLiteral("Helicopter"), {QStringLiteral("小型飞机"), QStringLiteral("小飞机")}},
    };
    for (const auto &row : synonyms) {
        for (const QString &synonym : row.second)
            EXPECT_EQ(writing.trZhToEn(synonym), row.first);
        EXPECT_EQ(reading.trEnToZh(row.first), row.second.first()) << row.first.toStdString();
    }
}

TEST(SpecialWords, CachedWordsFollowOnlyInitVars) {
    SpecialWords words;
    ASSERT_EQ(words.mlWord.size(), 46);
    EXPECT_EQ(QStringList(words.mlWord).removeDuplicates(), 0);
    EXPECT_EQ(words.mlWord.first(), QStringLiteral("机动车道"));
    words.setDbIsEnglish(true);
    words.setLangIsNotZh(true);
    EXPECT_EQ(words.mlWord.first(), QStringLiteral("机动车道"));
    words.initVars();
    ASSERT_EQ(words.mlWord.size(), 46);
    EXPECT_EQ(words.mlWord.first(), QStringLiteral("MotorizedLane"));
    EXPECT_EQ(words.mlWord.at(19), QStringLiteral("Sidewalk"));
    EXPECT_EQ(words.mlWord.at(20), QStringLiteral("MixedLane"));
    EXPECT_EQ(words.mlWord.last(), QStringLiteral("No"));
}

TEST(SpecialWords, ConstantsNameTheWordsInBothLanguages) {
    const QString red = Words::Red;
    EXPECT_EQ(red, QStringLiteral("红"));
    EXPECT_EQ(Words::NonMotorizedLane.inEnglish(), QStringLiteral("NonMotorizedLane"));
    EXPECT_EQ(QString(Words::MixedLaneSynonym), QStringLiteral("机非共享"));
    EXPECT_TRUE(Words::Grey.names(QStringLiteral("灰")));
    EXPECT_TRUE(Words::Grey.names(QStringLiteral("Grey")));
    EXPECT_FALSE(Words::Grey.names(QStringLiteral("grey")));
    EXPECT_FALSE(Words::Grey.names(QString()));
    // An English store gives the other word back that it has for this one.
    EXPECT_TRUE(Words::Freeway.names(dictionary(true, false).trEnToZh(QStringLiteral("Freeway"))));
    EXPECT_FALSE(Words::Freeway.names(QStringLiteral("城市快速路")));
    EXPECT_TRUE(Words::isKnown(QStringLiteral("BusBay")));
    EXPECT_TRUE(Words::isKnown(QStringLiteral("港湾式")));
    EXPECT_FALSE(Words::isKnown(QString()));
    const SpecialWords english = dictionary(true, true);
    EXPECT_EQ(english.getWord(Words::BusLane), QStringLiteral("BusLane"));
    EXPECT_EQ(SpecialWords().getWord(Words::BusLane), QStringLiteral("公交专用道"));
    // What an English store gets does not depend on the host's language.
    EXPECT_EQ(dictionary(true, false).storedWord(Words::Red), QStringLiteral("Red"));
    EXPECT_EQ(dictionary(false, true).storedWord(Words::Red), QStringLiteral("红"));
}
