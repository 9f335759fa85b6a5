#pragma once

#include "model/NetLists.h"
#include "tools/MoraToolsExport.h"

#include <QHash>
#include <QJsonObject>
#include <QString>

#include <vector>

namespace moratools {

/// The junctions of a network: where links have end nodes of one name. A node row belongs to one link, so it is
/// the name that makes them meet.
///
/// What a junction consists of in a network file (internal lanes, right of way) is kept in the attributes of one
/// of its links, with a digest of all that it was made from.
class MORATOOLS_EXPORT Junctions {
public:
    /// `network` must outlive this object.
    explicit Junctions(const NetLists &network);

    /// Whether a link begins or ends there; the following take no other name.
    bool has(const QString &name) const { return mEnds.contains(name); }

    /// The link whose attributes keep the inside: the first that leads there, or else from there.
    Link &keeper(const QString &name) const;

    /// What the inside depends on: of each link that ends or begins there its name, speed, lanes, their widths
    /// and last two points, what is kept of it; and the connectors between them. The same before a save and
    /// after a load, and under whatever identifiers.
    QString digest(const QString &name) const;

    /// Keeps an inside as a member of "sumo" in the keeper's attributes: "junction", or "startJunction" where no
    /// link leads there.
    static void keep(Link &keeper, const QString &name, const QJsonObject &inside);

private:
    struct Ends {
        std::vector<Link *> in;
        std::vector<Link *> out;
    };

    QByteArray describe(const Link &link, bool end) const;
    QByteArray describe(const Connector &connector) const;

    QHash<QString, Ends> mEnds;
    QHash<const Link *, std::vector<const Connector *>> mConnectorsFrom;
    QHash<const Link *, QByteArray> mKeptOf; ///< name, speed and what is kept of a link but the insides
};

} // namespace moratools
