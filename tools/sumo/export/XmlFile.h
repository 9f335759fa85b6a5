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

    /// Attributes of the root, before anything is written into it.
    QXmlStreamWriter &root() { return mXml; }
    void write(const KeptElement &element);
    void write(const std::vector<KeptElement> &elements);
    /// Text of elements as it was kept, UTF-8.
    void writeText(const QByteArray &text);
    /// Ends the root. Throws `Failure` when not all could be written.
    void finish();

private:
    Q_DISABLE_COPY(XmlFile)

    void flush();

    QFile mFile;
    QString mText; ///< what is not in the file yet: the writer would encode each name and value by itself
    QXmlStreamWriter mXml{&mText};
};

} // namespace moratools
