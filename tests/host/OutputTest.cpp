#include "tests/host/Morastore.h"
#include "tests/support/OldStores.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QXmlStreamReader>

#include <algorithm>

// What the program says, where it says it, and what it reports when nobody hears it.

namespace {

/// Escape sequences, line breaks, a C1 control, an override of direction: XML forbids some of them, too.
const QString kHostile = QStringLiteral("a\x1b[31m\nb\tc") + QChar(0x9b) + QChar(0x202e) + QChar(0x2066) +
                         QChar(0x7f) + QStringLiteral("d\\");
const QString kVisible = QStringLiteral("a\\x1b[31m\\nb\\tc\\x9b\\u202e\\u2066\\x7fd\\");

bool hasControls(const QString &text) {
    return std::any_of(text.begin(), text.end(), [](QChar character) {
        return character != QLatin1Char('\n') && (character.category() == QChar::Other_Control ||
                                                  character == QChar(0x202e) || character == QChar(0x2066));
    });
}

} // namespace

TEST_F(Morastore, OutputThatCannotBeWrittenIsNoFailureOfWhatWasDone) {
#ifdef Q_OS_LINUX
    const QString store = newStore();
    const QString target = newStore(QStringLiteral("target"));
    const QString older = file(QStringLiteral("older"));
    copyTemplate("EmptyNet_V2.1.1", older);
    const auto networks = [this](const QString &path) {
        return row(path, QStringLiteral("select count(*) from Net")).first().toInt();
    };
    const struct {
        QStringList command;
        const char *sentence;
        const QString &changed;
        int networks;
    } table[] = {
        {{QStringLiteral("import"), store, kExample}, "\" is in the store, but the output cannot", store, 1},
        {{QStringLiteral("copy"), store, target}, "are in the target, but the output cannot", target, 1},
        {{QStringLiteral("remove"), store, QStringLiteral("crossing"), QStringLiteral("--yes")},
         "\" is gone, but the output cannot",
         store,
         0},
        {{QStringLiteral("compact"), store}, "the store is compacted, but the output cannot", store, 0},
        {{QStringLiteral("upgrade"), older}, "the store is current now, but the output cannot", older, 0},
        {{QStringLiteral("info"), target}, "morastore: the output cannot be written", target, 1},
        {{QStringLiteral("info"), target, QStringLiteral("--json")}, ": the output cannot", target, 1},
        {{QStringLiteral("show"), target, QStringLiteral("links")}, ": the output cannot", target, 1},
        {{QStringLiteral("digest"), target}, ": the output cannot be written", target, 1},
        {{QStringLiteral("--help")}, ": the output cannot be written", target, 1},
    };
    for (const auto &entry : table) {
        const Outcome outcome = runInShell(entry.command, "> /dev/full");
        EXPECT_EQ(outcome.exitCode, 4) << entry.sentence << outcome.err.toStdString();
        EXPECT_TRUE(outcome.err.contains(QLatin1String(entry.sentence))) << outcome.err.toStdString();
        EXPECT_EQ(outcome.err.count(QLatin1Char('\n')), 1);
        EXPECT_EQ(networks(entry.changed), entry.networks) << entry.sentence;
    }
    // Neither is heard, or both are closed: the exit code is all that is left.
    int number = 1;
    for (const char *redirections : {"> /dev/full 2> /dev/full", ">&- 2>&-", "<&- >&- 2>&-"}) {
        const QString name = QString::number(++number);
        EXPECT_EQ(runInShell({QStringLiteral("import"), target, kExample, QStringLiteral("--name"), name},
                             redirections)
                      .exitCode,
                  4)
            << redirections;
        EXPECT_EQ(networks(target), number);
        EXPECT_EQ(runInShell({QStringLiteral("import"), target, kExample, QStringLiteral("--name"), name},
                             redirections)
                      .exitCode,
                  1)
            << "the name is taken";
    }
    // Who closes a pipe has read enough.
    const Outcome outcome =
        start(QStringLiteral("/bin/sh"),
              {QStringLiteral("-c"), QStringLiteral("\"$@\" | true"), QStringLiteral("sh"),
               morastoreProgram(), QStringLiteral("show"), target, QStringLiteral("links")});
    EXPECT_EQ(outcome.err, QString());
#else
    GTEST_SKIP() << "no /dev/full";
#endif
}

TEST_F(Morastore, ControlCharactersOfNamesNeverReachATerminal) {
    const QString store = newStore();
    const Outcome imported =
        run({QStringLiteral("import"), store, kExample, QStringLiteral("--name"), kHostile});
    ASSERT_EQ(imported.exitCode, 0) << imported.err.toStdString();
    EXPECT_TRUE(imported.out.contains(QStringLiteral("network 1 \"%1\": 13 links").arg(kVisible)));
    alter(store, {QStringLiteral("update Link set linkName = (select name from Net) where linkID = 1")});
    const QString picture = file(QStringLiteral("p.svg"));
    const QStringList commands[] = {
        {QStringLiteral("info"), store},
        {QStringLiteral("info"), store, QStringLiteral("--json")},
        {QStringLiteral("show"), store, QStringLiteral("links")},
        {QStringLiteral("show"), store, QStringLiteral("links"), QStringLiteral("1")},
        {QStringLiteral("show"), store, QStringLiteral("links"), QStringLiteral("1"),
         QStringLiteral("--json")},
        {QStringLiteral("digest"), store},
        {QStringLiteral("copy"), store, newStore(QStringLiteral("copy"))},
        {QStringLiteral("draw"), store, picture, QStringLiteral("--net"), kHostile},
        {QStringLiteral("remove"), store, kHostile}, // asks, and there is nobody
        {QStringLiteral("import"), store, kExample, QStringLiteral("--name"), kHostile},
        {QStringLiteral("show"), store, kHostile},
        {kHostile},
    };
    for (const QStringList &command : commands) {
        const Outcome outcome = run(command);
        EXPECT_FALSE(hasControls(outcome.out)) << outcome.out.toStdString();
        EXPECT_FALSE(hasControls(outcome.err)) << outcome.err.toStdString();
        const bool asJson = command.contains(QStringLiteral("--json"));
        if (command.first() != QLatin1String("draw") && !asJson) {
            EXPECT_TRUE((outcome.out + outcome.err).contains(kVisible))
                << outcome.out.toStdString() << outcome.err.toStdString();
        }
    }
    const QJsonDocument links = QJsonDocument::fromJson(
        run({QStringLiteral("show"), store, QStringLiteral("links"), QStringLiteral("--json")}).out.toUtf8());
    EXPECT_EQ(links.array().at(0).toObject().value(QStringLiteral("name")).toString(), kHostile);

    QXmlStreamReader svg(read(picture));
    QString title;
    while (!svg.atEnd()) {
        if (svg.readNext() == QXmlStreamReader::StartElement && svg.name() == QLatin1String("title"))
            title = svg.readElementText();
    }
    EXPECT_EQ(svg.error(), QXmlStreamReader::NoError) << svg.errorString().toStdString();
    EXPECT_TRUE(title.startsWith(QStringLiteral("a\ufffd[31m"))) << title.toStdString();
}

TEST_F(Morastore, AWrongCommandLineIsNamed) {
    const QString store = newStore();
    const struct {
        QStringList arguments;
        const char *sentence;
    } table[] = {
        {{}, "give a command"},
        {{QStringLiteral("--verbose")}, "give a command"},
        {{QStringLiteral("infos"), store}, "there is no command \"infos\""},
        {{QStringLiteral("info")}, "STORE is required"},
        {{QStringLiteral("show"), store, QStringLiteral("links"), QStringLiteral("-5")},
         "\"-5\" is no number of an object; give one from 0 to 2147483647"},
        {{QStringLiteral("show"), store, QStringLiteral("links"), QStringLiteral("4294967297")},
         "give one from 0 to 2147483647"},
        {{QStringLiteral("draw"), store, QStringLiteral("p.svg"), QStringLiteral("--size"),
          QStringLiteral("5")},
         "not in range 200 to 20000"},
    };
    for (const auto &entry : table) {
        const Outcome outcome = run(entry.arguments);
        EXPECT_EQ(outcome.exitCode, 2) << entry.sentence;
        EXPECT_TRUE(outcome.err.startsWith(QLatin1String("morastore: "))) << outcome.err.toStdString();
        EXPECT_TRUE(outcome.err.contains(QLatin1String(entry.sentence))) << outcome.err.toStdString();
        EXPECT_EQ(outcome.err.count(QLatin1Char('\n')), 1) << outcome.err.toStdString();
        EXPECT_LT(outcome.err.size(), 200) << outcome.err.toStdString();
    }
    for (const char *command : {"new", "info", "compact", "upgrade", "protect"})
        expectSentence(run({QLatin1String(command), QString()}),
                       QStringLiteral("morastore: the name of the store is empty"));
    expectSentence(run({QStringLiteral("import"), store, QString()}),
                   QStringLiteral("the name of a file is empty"));
    expectSentence(run({QStringLiteral("draw"), store, QString()}),
                   QStringLiteral("the name of the picture is empty"));
    const QString help = run({QStringLiteral("--help")}).out;
    for (int code = 0; code <= 4; ++code)
        EXPECT_TRUE(help.contains(QStringLiteral("\n  %1  ").arg(code))) << code;
}
