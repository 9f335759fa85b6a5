#pragma once

#include "store/core/Store.h"

#include <QList>

class Connector;
class NetLoad;
class NetSave;

/// Connectors with their lane connectors.
namespace connectors {

bool insert(const Store &store, Connector *connector, bool inTransaction);
/// Writes connectors in the caller's transaction, each statement prepared once; goes on after failures.
bool insertAll(Store &store, const QList<Connector *> &connectors);
Connector *read(const Store &store, long connectorId);
bool listIds(const Store &store, QList<long> &ids);

void load(NetLoad &net);
void save(NetSave &net);

} // namespace connectors
