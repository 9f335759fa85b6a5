#include "tools/sumo/reader/CompanionReader.h"

#include "tools/sumo/reader/ElementReaders.h"

#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>

namespace moratools {

namespace {

constexpr int kElementsBetweenReports = 2000;

/// SUMO takes any root for these files; the two kinds that a user mixes up with them are told apart.
void checkRoot(const XmlInput &input) {
    const QStringRef root = input.name();
    if (root == QLatin1String("net") || root.endsWith(QLatin1String("onfiguration")))
        input.fail(
            QStringLiteral("the root element is <%1>; give a SUMO file of routes or additional objects")
                .arg(root.toString()));
}

/// What the file is called where all are in one folder.
QString nameApart(const QString &path, const std::vector<SumoFile> &others) {
    QString name = QFileInfo(path).fileName();
    if (name.endsWith(QLatin1String(".gz"), Qt::CaseInsensitive))
        name.chop(3);
    const auto isTaken = [&others](const QString &wanted) {
        return std::any_of(others.begin(), others.end(), [&wanted](const SumoFile &other) {
            return other.name.compare(wanted, Qt::CaseInsensitive) == 0;
        });
    };
    QString apart = name;
    for (int number = 2; isTaken(apart); ++number)
        apart = QStringLiteral("%1_%2").arg(QString::number(number), name);
    return apart;
}

/// Reads an element below the root.
void readElement(CompanionReading &reading) {
    ElementReader reader = demandReader(reading.input.name());
    if (!reader)
        reader = deviceReader(reading.input.name());
    KeptEntry entry;
    const qint64 number = reading.input.elementNumber();
    reading.input.keepWhileRead(entry.element);
    if (reader)
        reader(reading);
    else
        reading.input.skipElement();
    SumoFile &file = reading.into.kept[std::size_t(reading.file)];
    file.elements.add(entry);
    file.numbers.push_back(number);
    file.kinds.insert(entry.element.name);
}

} // namespace

std::optional<double> optionalNumber(const Attributes &attributes, const char *name) {
    return attributes.has(name) ? std::optional<double>(attributes.number(name)) : std::nullopt;
}

QStringList words(const Attributes &attributes, const char *name) {
    static const QRegularExpression separator(QStringLiteral("[\\s,]+"));
    return attributes.text(name, QString()).split(separator, Qt::SkipEmptyParts);
}

void readSumoCompanion(const QString &path, SumoCompanions &into, const Progress &progress,
                       CompanionRole role) {
    XmlInput input(path, QString(), QStringLiteral("a SUMO file of routes or additional objects"));
    checkRoot(input);
    CompanionReading reading{input, into, into.files.size(), {}};
    into.files.append(path);
    into.kept.push_back({nameApart(path, into.kept), role == CompanionRole::Routes, {}, {}, {}});
    for (int count = 0; input.nextElement(); ++count) {
        if (count % kElementsBetweenReports == 0)
            reportShare(progress, input.progress());
        if (input.name() == QLatin1String("include")) {
            into.includes.push_back({Attributes(input).text("href"), reading.here()});
            input.skipElement();
        } else {
            readElement(reading);
        }
    }
    reportShare(progress, 1.0);
}

} // namespace moratools
