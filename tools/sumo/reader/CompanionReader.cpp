#include "tools/sumo/reader/CompanionReader.h"

#include "tools/sumo/reader/ElementReaders.h"

#include <QRegularExpression>

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

} // namespace

std::optional<double> optionalNumber(const Attributes &attributes, const char *name) {
    return attributes.has(name) ? std::optional<double>(attributes.number(name)) : std::nullopt;
}

QStringList words(const Attributes &attributes, const char *name) {
    static const QRegularExpression separator(QStringLiteral("[\\s,]+"));
    return attributes.text(name, QString()).split(separator, Qt::SkipEmptyParts);
}

void readSumoCompanion(const QString &path, SumoCompanions &into, const Progress &progress) {
    XmlInput input(path, QString(), QStringLiteral("a SUMO file of routes or additional objects"));
    checkRoot(input);
    into.files.append(path);
    CompanionReading reading{input, into, {}};
    for (int count = 0; input.nextElement(); ++count) {
        if (progress && count % kElementsBetweenReports == 0)
            progress(input.progress());
        ElementReader reader = demandReader(input.name());
        if (!reader)
            reader = deviceReader(input.name());
        if (reader)
            reader(reading);
        else
            reading.leaveUnread();
    }
    if (progress)
        progress(1.0);
}

} // namespace moratools
