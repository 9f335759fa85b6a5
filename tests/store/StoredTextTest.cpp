#include "model/NetContents.h"
#include "tests/support/Builders.h"
#include "tests/support/StoreFixture.h"

namespace {

/// Texts that other programs have written into SQLite stores.
class StoredTextTest : public StoreKindFixture {
protected:
    void prepare() override {
        DBTools::initDictionary(gDB, kNet, true);
        const auto link = sampleLink(7);
        ASSERT_TRUE(DBTools::insertLink(gDB, kNet, link.get(), true));
        addRow(QStringLiteral("SignalGroup"),
               QStringLiteral("signalGroupID, name, timeLength, startTime, endTime"),
               QStringLiteral("3, 'group', 1, 2, 3"));
        addRow(QStringLiteral("SignalPhase"),
               QStringLiteral("signalPhaseID, signalGroupID, serialNumber, name"),
               QStringLiteral("4, 3, 1, 'phase'"));
        clearFailures();
    }

    /// In lower case: generations spell the columns differently.
    std::string lastFailure() const {
        return failures().isEmpty() ? std::string() : failures().last().error.toLower().toStdString();
    }
};

TEST_P(StoredTextTest, WhatIsNoUtf8IsRefusedByName) {
    struct Place {
        const char *table;
        const char *column;
        long row; ///< as a load names it
    };
    for (const Place &place : {Place{"link", "linkname", 7}, Place{"link", "centerlinepointsjson", 7},
                               Place{"signalgroup", "name", 3}, Place{"signalphase", "name", 4},
                               Place{"lane", "actiontype", 71}}) {
        SCOPED_TRACE(std::string(place.table) + "." + place.column);
        const QString update = QLatin1String("update ") + QLatin1String(place.table) +
                               QLatin1String(" set ") + QLatin1String(place.column) + QLatin1String(" = ");
        execute(update + QStringLiteral("cast(x'7B61C3287D' as text)"));
        reopen();
        const std::unique_ptr<Link> link(DBTools::selectLinkByID(gDB, kNet, 7));
        const std::unique_ptr<SignalGroup> group(DBTools::selectSignalGroupByID(gDB, kNet, 3));
        // A part of an object that cannot be read is no answer, either.
        const QLatin1String table(place.table);
        EXPECT_EQ(link == nullptr, table == QLatin1String("link") || table == QLatin1String("lane"));
        EXPECT_EQ(group == nullptr, table.startsWith(QLatin1String("signal")));
        EXPECT_GE(failureCount(), 1);
        EXPECT_NE(lastFailure().find(std::string(place.column) + " is not utf-8"), std::string::npos)
            << lastFailure();
        clearFailures();
        NetContents contents;
        EXPECT_FALSE(DBTools::loadNet(gDB, kNet, contents));
        EXPECT_TRUE(contents.links.empty());
        EXPECT_EQ(failureCount(), 1);
        EXPECT_NE(lastFailure().find("column " + std::string(place.column) + " of table " + place.table +
                                     ", row " + std::to_string(place.row) + ", is not utf-8"),
                  std::string::npos)
            << lastFailure();
        execute(update + QStringLiteral("'sound'"));
    }
}

TEST_P(StoredTextTest, WhatIsFarTooLongIsRefusedByName) {
    const QString update = QStringLiteral("update Link set %1 = %2");
    const auto objects = [this](bool areThere, const char *of) {
        SCOPED_TRACE(of);
        reopen();
        const std::unique_ptr<Link> link(DBTools::selectLinkByID(gDB, kNet, 7));
        EXPECT_EQ(link != nullptr, areThere);
        EXPECT_EQ(failureCount(), areThere ? 0 : 1) << lastFailure();
        clearFailures();
        NetContents contents;
        EXPECT_EQ(DBTools::loadNet(gDB, kNet, contents), areThere);
        EXPECT_EQ(failureCount(), areThere ? 0 : 1) << lastFailure();
        return lastFailure();
    };
    for (const char *text : {"printf('%.*c', 1048577, 'x')", "cast(printf('%.*c', 4000000, 'x') as blob)"}) {
        execute(update.arg(QStringLiteral("linkName"), QLatin1String(text)));
        const std::string failure = objects(false, text);
        EXPECT_NE(failure.find("the text in column linkname of table link, row 7, is longer than 1048576 "
                               "characters"),
                  std::string::npos)
            << failure;
    }
    // 3 bytes each.
    execute(update.arg(QStringLiteral("linkName"),
                       QStringLiteral("replace(printf('%.*c', 1048576, 'x'), 'x', '路')")));
    objects(true, "the longest");
    execute(update.arg(QStringLiteral("otherAttrsJson"),
                       QStringLiteral("'{\"a\":\"' || printf('%.*c', 2000000, 'x') || '\"}'")));
    objects(true, "attributes");
    gNet.config().backgroundMap = QByteArray(80000000, 'x');
    ASSERT_TRUE(DBTools::saveConfiguration(gDB, kNet, true));
    NetContents contents;
    ASSERT_TRUE(DBTools::loadNet(gDB, kNet, contents));
    EXPECT_EQ(contents.settings.scene->backgroundMap.size(), 80000000);
}

TEST_P(StoredTextTest, EveryCharacterIsReadAsItIsStored) {
    const QString mark(1, QChar(0xFEFF));
    const QString replacement(1, QChar(0xFFFD));
    for (const QString &name : {mark + QStringLiteral("a mark in front"), mark + mark, replacement,
                                QStringLiteral("a") + replacement + mark, QString()}) {
        SCOPED_TRACE(qPrintable(QString::fromLatin1(name.toUtf8().toHex())));
        execute(QStringLiteral("update Link set linkName = cast(x'") +
                QString::fromLatin1(name.toUtf8().toHex()) + QStringLiteral("' as text)"));
        reopen();
        const std::unique_ptr<Link> link(DBTools::selectLinkByID(gDB, kNet, 7));
        ASSERT_NE(link, nullptr);
        EXPECT_EQ(link->linkName, name);
        NetContents contents;
        ASSERT_TRUE(DBTools::loadNet(gDB, kNet, contents));
        EXPECT_EQ(contents.links.front()->linkName, name);
        EXPECT_EQ(failureCount(), 0);
    }
}

TEST_P(StoredTextTest, BytesAndTextsGiveTheSameInBothWays) {
    // A map that was stored as a text, and JSON bytes that are no text at all.
    execute(QStringLiteral("update Configuration set backgroundMap = cast(x'61006263' as text)"));
    execute(QStringLiteral("update Link set otherAttrsJson = x'7B2261223A22C3287D'"));
    reopen();
    EXPECT_EQ(DBTools::selectBackgroundMap(gDB, kNet), QByteArray("a\0bc", 4));
    std::unique_ptr<Link> link(DBTools::selectLinkByID(gDB, kNet, 7));
    ASSERT_NE(link, nullptr);
    EXPECT_EQ(link->otherAttrsJson.text(), QByteArray("{\"a\":\"\xC3(}"));
    EXPECT_EQ(link->otherAttrsJson.object(), QJsonObject());
    link.reset();
    NetContents contents;
    ASSERT_TRUE(DBTools::loadNet(gDB, kNet, contents));
    EXPECT_EQ(contents.settings.scene->backgroundMap, QByteArray("a\0bc", 4));
    EXPECT_EQ(contents.links.front()->otherAttrsJson.text(), QByteArray("{\"a\":\"\xC3(}"));
    ASSERT_EQ(contents.skipped.size(), 1);
    EXPECT_EQ(contents.skipped.first().reason,
              QStringLiteral("holds JSON that does not parse and reads as empty"));
    EXPECT_EQ(failureCount(), 0);
}

TEST_P(StoredTextTest, SettingsThatCannotBeReadAreAFailure) {
    const QString damaged = QStringLiteral("cast(x'C3' as text)");
    execute(QStringLiteral("delete from SimulateConfiguration"));
    addRow(QStringLiteral("SimulateConfiguration"), QStringLiteral("simuTimeInterval, recordTrace"),
           QStringLiteral("900, ") + damaged);
    execute(QStringLiteral("update Configuration set showGrid = ") + damaged);
    execute(
        QStringLiteral("update DriveFollowedModelParam set alfa = %1 where modelParamID = 1").arg(damaged));
    SimulateConfiguration simulation;
    EXPECT_FALSE(DBTools::selectSimuConfiguration(gDB, kNet, simulation));
    EXPECT_EQ(failureCount(), 1);
    Configuration scene;
    EXPECT_FALSE(DBTools::selectConfiguration(gDB, kNet, scene));
    EXPECT_EQ(failureCount(), 2);
    DriveFollowedModelParam first;
    DriveFollowedModelParam second;
    EXPECT_FALSE(DBTools::selectDriveFollowedModelParam(gDB, kNet, first, second));
    EXPECT_EQ(failureCount(), 3);
    EXPECT_EQ(second.modelParamID, 2) << "the sound one is read";
}

INSTANTIATE_TEST_SUITE_P(Stores, StoredTextTest, testing::ValuesIn(kFileKinds), storeKindName);

} // namespace
