#pragma once

#include "store/core/Store.h"

#include <QJsonObject>
#include <QList>
#include <QString>

#include <optional>

class Link;
class NetLoad;
class NetSave;

/// Links with their nodes, vertices and lanes.
namespace links {

bool insertLink(const Store &store, Link *link, bool inTransaction);
/// Writes links in the caller's transaction, each statement prepared once; stops at the first failure.
bool insertLinks(Store &store, const QList<Link *> &links);
Link *readLink(const Store &store, long linkId);
bool listLinkIds(const Store &store, QList<long> &ids);

/// @{ Checks without a network, over all rows of a store; none when they could not be made.
std::optional<bool> linkHasVertex(const QSqlDatabase &db, long linkId, long vertexId, FailureList &failures);
std::optional<bool> nodeStandsOn(const QSqlDatabase &db, long nodeId, long vertexId, FailureList &failures);
/// @}

QString breakPoints(const QJsonObject &geometry);

/// The links of a network, with their lanes.
void loadAllLinks(NetLoad &net);
void saveAllLinks(NetSave &net);

} // namespace links
