#include "tools/sumo/export/XmlFile.h"

#include "tools/reports/Failure.h"

namespace moratools {

namespace {

constexpr int kEnough = 1 << 18;

} // namespace

XmlFile::XmlFile(const QString &path, const QString &root) : mFile(path) {
    if (!mFile.open(QIODevice::WriteOnly))
        throw Failure(QStringLiteral("%1 cannot be written (%2); choose another folder")
                          .arg(path, mFile.errorString()));
    mXml.setAutoFormatting(true);
    mXml.writeStartDocument();
    mXml.writeStartElement(root);
}

void XmlFile::write(const KeptElement &element) {
    writeElement(mXml, element);
    if (mText.size() > kEnough)
        flush();
}

void XmlFile::write(const std::vector<KeptElement> &elements) {
    for (const KeptElement &element : elements)
        write(element);
}

void XmlFile::writeText(const QByteArray &text) {
    mXml.writeCharacters(QString()); // ends the tag that is open
    flush();
    mFile.write(text);
}

void XmlFile::flush() {
    mFile.write(mText.toUtf8());
    mText.clear();
}

void XmlFile::finish() {
    mXml.writeEndDocument();
    flush();
    if (mFile.error() != QFileDevice::NoError || !mFile.flush())
        throw Failure(QStringLiteral("%1 cannot be written (%2); make room there")
                          .arg(mFile.fileName(), mFile.errorString()));
    mFile.close();
}

} // namespace moratools
