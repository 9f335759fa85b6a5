#pragma once

#include "store/core/Store.h"

#include <QList>

class Connector;
class NetLoad;
class NetSave;

/// Connectors with their lane connectors.
namespace connectors {

bool insertConnector(const Store &store, Connector *connector, bool inTransaction);
/// Writes connectors in the caller's transaction, each statement prepared once; goes on after failures.
bool insertConnectors(Store &store, const QList<Connector *> &connectors);
Connector *readConnector(const Store &store, long connectorId);
bool listConnectorIds(const Store &store, QList<long> &ids);

void loadAllConnectors(NetLoad &net);
void saveAllConnectors(NetSave &net);

} // namespace connectors
