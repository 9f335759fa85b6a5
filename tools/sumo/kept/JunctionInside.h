#pragma once

#include "tools/MoraToolsExport.h"
#include "tools/sumo/kept/Packed.h"

#include <QByteArray>
#include <QString>

namespace moratools {

/// What a junction of a SUMO network consists of, as text of the file, an element a line.
struct MORATOOLS_EXPORT JunctionInside {
    QByteArray edges;       ///< internal edges, crossings and walking areas
    QByteArray rightOfWay;  ///< the junction's own element: the lists of its lanes and its requests
    QByteArray junctions;   ///< where vehicles wait inside
    QByteArray connections; ///< from the edges that lead here and from the internal ones
    QByteArray viewed = {}; ///< what the parts are views of, if they are

    /// All of it as one value of a JSON object, see packed(): the four parts with an empty line between each.
    QString toText(Packer &packer) const;
    /// What toText() gave; a text that it did not make gives parts that are empty. The parts are views, good while
    /// this object or a copy of it lives.
    static JunctionInside fromText(const QString &text);
};

} // namespace moratools
