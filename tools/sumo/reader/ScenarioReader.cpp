#include "tools/sumo/reader/ScenarioReader.h"

#include "tools/sumo/reader/DepartureTimes.h"
#include "tools/sumo/reader/XmlInput.h"

#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QSet>

namespace moratools {

namespace {

/// SUMO's short names of the options that are looked at here, and the full ones.
QString fullName(const QString &name) {
    static const QHash<QString, QString> names{
        {QStringLiteral("n"), QStringLiteral("net-file")},
        {QStringLiteral("net"), QStringLiteral("net-file")},
        {QStringLiteral("r"), QStringLiteral("route-files")},
        {QStringLiteral("routes"), QStringLiteral("route-files")},
        {QStringLiteral("a"), QStringLiteral("additional-files")},
        {QStringLiteral("additional"), QStringLiteral("additional-files")},
        {QStringLiteral("b"), QStringLiteral("begin")},
        {QStringLiteral("e"), QStringLiteral("end")},
        {QStringLiteral("w"), QStringLiteral("weight-files")},
        {QStringLiteral("weights"), QStringLiteral("weight-files")},
    };
    return names.value(name, name);
}

class ScenarioReader {
public:
    explicit ScenarioReader(const QString &path)
        : mInput(path, QString(), QStringLiteral("a SUMO configuration (.sumocfg)")),
          mFolder(QFileInfo(path).dir()) {}

    SumoScenario read();

private:
    void readElement();
    void take(const QString &name, const QString &value);
    QStringList files(const QString &value) const;
    double seconds(const QString &name, const QString &value) const;

    XmlInput mInput;
    QDir mFolder;
    SumoScenario mScenario;
    QSet<QString> mSeen;
};

SumoScenario ScenarioReader::read() {
    for (const char *other : {"net", "routes", "additional"}) {
        if (mInput.name() == QLatin1String(other))
            mInput.fail(QStringLiteral("the root element is <%1>; give a SUMO configuration (.sumocfg)")
                            .arg(QLatin1String(other)));
    }
    while (mInput.nextElement())
        readElement();
    if (mScenario.network.isEmpty())
        mInput.fail(
            QStringLiteral("no net-file is named; give a SUMO configuration (.sumocfg) of a simulation"));
    return std::move(mScenario);
}

/// An option, or a group of options.
void ScenarioReader::readElement() {
    const QString name = fullName(mInput.name().toString());
    const Attributes attributes(mInput);
    const bool hasValue = attributes.has("value") || attributes.has("v");
    const QString value = attributes.text("value", attributes.text("v", QString()));
    bool isGroup = false;
    while (mInput.nextElement()) {
        isGroup = true;
        if (hasValue)
            mInput.skipElement();
        else
            readElement();
    }
    if (hasValue)
        take(name, value);
    else if (!isGroup && !mInput.text().isEmpty())
        take(name, mInput.text());
}

void ScenarioReader::take(const QString &name, const QString &value) {
    if (mSeen.contains(name))
        mInput.fail(QStringLiteral("the option \"%1\" occurs a second time; correct the file").arg(name));
    mSeen.insert(name);
    if (name == QLatin1String("net-file")) {
        mScenario.network = files(value).value(0);
        return;
    }
    if (name == QLatin1String("route-files") || name == QLatin1String("additional-files")) {
        (name == QLatin1String("route-files") ? mScenario.routes : mScenario.additional) = files(value);
        return;
    }
    if (name == QLatin1String("weight-files") || name == QLatin1String("load-state")) {
        mScenario.furtherFiles.append(QStringLiteral("%1=\"%2\"").arg(name, value));
        return;
    }
    mScenario.options.emplace_back(name, value);
    if (name == QLatin1String("begin"))
        mScenario.begin = seconds(name, value);
    else if (name == QLatin1String("end") && !value.startsWith(QLatin1Char('-')))
        mScenario.end = seconds(name, value); // a negative one stands for none
    else if (name == QLatin1String("step-length"))
        mScenario.stepLength = seconds(name, value);
    else if (name == QLatin1String("seed"))
        mScenario.seed = value.toInt();
}

QStringList ScenarioReader::files(const QString &value) const {
    QStringList paths;
    const QStringList names = value.split(QLatin1Char(','), Qt::SkipEmptyParts);
    for (const QString &name : names) {
        if (!name.trimmed().isEmpty())
            paths.append(QDir::cleanPath(mFolder.filePath(name.trimmed())));
    }
    return paths;
}

double ScenarioReader::seconds(const QString &name, const QString &value) const {
    const std::optional<double> seconds = secondsOf(value);
    if (!seconds || *seconds < 0 || *seconds > kLastSecond)
        mInput.fail(QStringLiteral("the option \"%1\" is \"%2\", which is no time; correct the file")
                        .arg(name, value));
    return *seconds;
}

} // namespace

SumoScenario readScenario(const QString &sumocfg) {
    return ScenarioReader(sumocfg).read();
}

} // namespace moratools
