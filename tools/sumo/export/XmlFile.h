#pragma once

#include "tools/sumo/kept/KeptElement.h"

#include <QFile>
#include <QXmlStreamWriter>

namespace moratools {

/// A file of SUMO's in the making: a root element, and elements in it one after the other.
class XmlFile {
public:
    /// Throws `Failure` when the file cannot be made.
    XmlFile(const QString &path, const QString &root);

    void write(const KeptElement &element) { writeElement(mXml, element); }
    void write(const std::vector<KeptElement> &elements);
    /// Ends the root. Throws `Failure` when not all could be written.
    void finish();

private:
    QFile mFile;
    QXmlStreamWriter mXml;
};

} // namespace moratools
