#pragma once

#include "tools/MoraToolsExport.h"

#include <QByteArray>
#include <QJsonArray>
#include <QString>

#include <utility>
#include <vector>

class QXmlStreamWriter;

namespace moratools {

/// An element of a SUMO file as it stood, with everything in it but texts between elements, which SUMO's files
/// do not have. What the store has no column for is kept so in the attributes of the object that the element
/// belongs to, under "sumo".
struct MORATOOLS_EXPORT KeptElement {
    QString name;
    std::vector<std::pair<QString, QString>> attributes; ///< in the file's order
    std::vector<KeptElement> children;

    /// The attribute, or null where it is not given.
    const QString *attribute(const QString &wanted) const;
    /// Gives the attribute a value; a new one is the last.
    void setAttribute(const QString &wanted, const QString &value);

    /// `["vType", {"id": "car"}, [children...]]`; empty parts at the end are left out.
    QJsonArray toJson() const;
    /// An array of another form gives an element without a name; what is nested deeper than any file that is
    /// read is left out.
    static KeptElement fromJson(const QJsonArray &json);
};

/// Elements and attributes whose names no XML file can have are left out.
MORATOOLS_EXPORT void writeElement(QXmlStreamWriter &writer, const KeptElement &element);

} // namespace moratools
