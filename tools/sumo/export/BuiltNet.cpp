#include "tools/sumo/export/BuiltNet.h"

#include "tools/reports/Failure.h"

#include <QFile>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <cmath>

namespace moratools {

namespace builtnet {

namespace {

// Networks say lengths to a centimetre.
constexpr double kSameLength = 0.005;

const QString kEdge = QStringLiteral("edge");
const QString kId = QStringLiteral("id");
const QString kLength = QStringLiteral("length");

class Input {
public:
    explicit Input(const QString &path) : mFile(path), mXml(&mFile) {
        if (!mFile.open(QIODevice::ReadOnly))
            throw Failure(QStringLiteral("%1 cannot be read (%2); try again").arg(path, mFile.errorString()));
    }
    QXmlStreamReader &xml() { return mXml; }
    void finish() const {
        if (mXml.hasError())
            throw Failure(QStringLiteral("%1 is no network (%2); make room there and try again")
                              .arg(mFile.fileName(), mXml.errorString()));
    }

private:
    QFile mFile;
    QXmlStreamReader mXml;
};

QHash<QString, const Link *> linksById(const ExportedRoads &roads) {
    QHash<QString, const Link *> links;
    for (const Link *link : roads.links())
        links.insert(roads.names().of(link), link);
    return links;
}

/// The tag with the attribute left out.
void writeWithout(QXmlStreamWriter &to, const QXmlStreamReader &xml, const QString &attribute) {
    to.writeStartElement(xml.name().toString());
    for (const QXmlStreamAttribute &each : xml.attributes()) {
        if (each.name() != attribute)
            to.writeAttribute(each);
    }
}

bool saysNoLength(const Link *link) {
    const QJsonObject kept = link ? keptOf(link->otherAttrsJson) : QJsonObject();
    return !kept.isEmpty() && !kept.contains(kLength);
}

void writeProgrammes(QXmlStreamWriter &to, const ExportedSignals &controls) {
    for (const KeptElement &programme : controls.programmes()) {
        writeElement(to, programme);
        to.writeCharacters(QStringLiteral("\n    "));
    }
}

} // namespace

std::vector<const Link *> ofOtherLength(const QString &path, const ExportedRoads &roads) {
    const QHash<QString, const Link *> links = linksById(roads);
    std::vector<const Link *> differing;
    Input input(path);
    const Link *link = nullptr;
    while (!input.xml().atEnd()) {
        if (input.xml().readNext() != QXmlStreamReader::StartElement)
            continue;
        const QXmlStreamAttributes attributes = input.xml().attributes();
        if (input.xml().name() == kEdge)
            link = links.value(attributes.value(kId).toString());
        if (link && input.xml().name() == QLatin1String("lane") &&
            std::abs(attributes.value(kLength).toDouble() - link->length) > kSameLength) {
            differing.push_back(link);
            link = nullptr;
        }
    }
    input.finish();
    return differing;
}

void putRight(const QString &from, const QString &to, const ExportedRoads &roads,
              const ExportedSignals &controls) {
    const QHash<QString, const Link *> links = linksById(roads);
    QFile file(to);
    if (!file.open(QIODevice::WriteOnly))
        throw Failure(
            QStringLiteral("%1 cannot be written (%2); choose another folder").arg(to, file.errorString()));
    QXmlStreamWriter out(&file);
    Input input(from);
    QXmlStreamReader &xml = input.xml();
    bool hasProgrammes = false;
    while (!xml.atEnd()) {
        const QXmlStreamReader::TokenType token = xml.readNext();
        if (token == QXmlStreamReader::Invalid || token == QXmlStreamReader::Comment)
            continue;
        if (token == QXmlStreamReader::StartElement && xml.name() == QLatin1String("tlLogic")) {
            xml.skipCurrentElement();
            if (!hasProgrammes)
                writeProgrammes(out, controls);
            hasProgrammes = true;
        } else if (token == QXmlStreamReader::StartElement && xml.name() == kEdge &&
                   xml.attributes().hasAttribute(kLength) &&
                   saysNoLength(links.value(xml.attributes().value(kId).toString()))) {
            writeWithout(out, xml, kLength);
        } else {
            out.writeCurrentToken(xml);
        }
    }
    input.finish();
    if (out.hasError() || !file.flush())
        throw Failure(
            QStringLiteral("%1 cannot be written (%2); make room there").arg(to, file.errorString()));
}

} // namespace builtnet

} // namespace moratools
