#include "tools/sumo/export/XmlFile.h"

#include "tools/reports/Failure.h"

namespace moratools {

XmlFile::XmlFile(const QString &path, const QString &root) : mFile(path), mXml(&mFile) {
    if (!mFile.open(QIODevice::WriteOnly))
        throw Failure(QStringLiteral("%1 cannot be written (%2); choose another folder")
                          .arg(path, mFile.errorString()));
    mXml.setAutoFormatting(true);
    mXml.writeStartDocument();
    mXml.writeStartElement(root);
}

void XmlFile::write(const std::vector<KeptElement> &elements) {
    for (const KeptElement &element : elements)
        write(element);
}

void XmlFile::finish() {
    mXml.writeEndDocument();
    if (mXml.hasError() || !mFile.flush())
        throw Failure(QStringLiteral("%1 cannot be written (%2); make room there")
                          .arg(mFile.fileName(), mFile.errorString()));
    mFile.close();
}

} // namespace moratools
