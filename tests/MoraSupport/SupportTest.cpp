#include <MoraSupport/FileHelper.h>
#include <MoraSupport/MyLogger.h>

#include <QFile>
#include <QStringList>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

QStringList logged; // "category|text"

void remember(QtMsgType, const QMessageLogContext &context, const QString &text) {
    logged.append(QString::fromUtf8(context.category) + QLatin1Char('|') + text);
}

class Support : public ::testing::Test {
protected:
    void SetUp() override {
        logged.clear();
        mPrevious = qInstallMessageHandler(remember);
    }
    void TearDown() override {
        qInstallMessageHandler(mPrevious);
        qunsetenv("MORA_CONFIG");
    }

    // Lets MORA_CONFIG name a file of that content.
    void configure(const QByteArray &content) {
        const QString path = mFolder.filePath(QStringLiteral("配置 %1.json"));
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
        qputenv("MORA_CONFIG", QFile::encodeName(path));
    }

    QTemporaryDir mFolder;

private:
    QtMessageHandler mPrevious = nullptr;
};

} // namespace

TEST_F(Support, LoggerHandsTheTextOnAsItIs) {
    const QString text = QStringLiteral("网 \"a\"\n1\n%1 ");
    MyLogger(QStringLiteral("store 1")).error(text);
    EXPECT_EQ(logged, QStringList(QStringLiteral("MoraStore.store 1|") + text));
}

TEST_F(Support, ConfigurationFileGivesItsObject) {
    configure("{\"__dbdriver\":\"QPSQL\",\"__pgdbport\":5433}");
    const QJsonObject settings = FileHelper::readConfigFile();
    EXPECT_EQ(settings.value(QStringLiteral("__dbdriver")).toString(), QStringLiteral("QPSQL"));
    EXPECT_EQ(settings.value(QStringLiteral("__pgdbport")).toInt(), 5433);
    EXPECT_TRUE(logged.isEmpty());
}

TEST_F(Support, UnusableConfigurationIsEmptyAndLogged) {
    for (const char *content : {"{\"a\":", "[1]", ""}) {
        logged.clear();
        configure(content);
        EXPECT_TRUE(FileHelper::readConfigFile().isEmpty());
        ASSERT_EQ(logged.size(), 1);
        EXPECT_TRUE(logged.first().startsWith(QStringLiteral("MoraStore.config|Configuration file \"")));
        EXPECT_TRUE(logged.first().contains(QStringLiteral("配置 %1.json"))) << logged.first().toStdString();
    }
    logged.clear();
    qputenv("MORA_CONFIG", QFile::encodeName(mFolder.filePath(QStringLiteral("absent.json"))));
    EXPECT_TRUE(FileHelper::readConfigFile().isEmpty());
    EXPECT_EQ(logged.size(), 1);
}
