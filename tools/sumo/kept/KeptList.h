#pragma once

#include "tools/MoraToolsExport.h"
#include "tools/sumo/kept/KeptElement.h"

#include <QByteArray>
#include <QJsonArray>
#include <QJsonValue>

#include <functional>
#include <vector>

namespace moratools {

/// An element that an import kept, with the digest of the objects that it made of it.
struct KeptEntry {
    KeptElement element;
    QString of; ///< empty where no object was made of the element alone
};

/// Elements of a file in its order. A file may have hundreds of thousands: they are packed while they come in.
class MORATOOLS_EXPORT KeptList {
public:
    void add(const KeptEntry &entry);
    bool isEmpty() const { return mParts.empty() && mOpen.isEmpty(); }

    /// Calls `visit` with each entry in order.
    void forEach(const std::function<void(KeptEntry)> &visit) const;

    /// A list of texts, each of which is the packed() JSON of a part of the elements:
    /// `[{"e": element, "of": digest}, ...]`. Equal for equal entries.
    QJsonArray toJson() const;
    /// Of what toJson() gave, or of one such text; what is of another form is left out.
    static KeptList fromJson(const QJsonValue &json);

private:
    std::vector<QByteArray> mParts; ///< packed
    QByteArray mOpen;               ///< the last part, without its brackets
};

} // namespace moratools
