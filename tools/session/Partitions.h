#pragma once

#include <QString>

namespace moratools {

class Server;

/// Stores whose networks are spread over partitions.
///
/// Each table of a network's rows is a parent without rows of its own, partitioned by hash of the network. The
/// rows of partition K, counted from 0, are in tables of the same names in schema part_K, its leaves, with all
/// keys among them: a network has all its rows in one partition. What is asked of all networks at once (their
/// records, counters and link types) and what belongs to none are plain tables, and identifiers come from
/// sequences, as in other stores.
namespace partitions {

/// The schema of a partition's leaves.
QString schemaOf(int partition);

/// @{ Work within the server's transaction. They throw `Failure` with the server's words.

/// Makes the tables of a store of `count` partitions in the schema of the session.
void makeStore(Server &server, int count);
/// Makes a schema and in it the tables of a partition's leaves, which belong to no store yet.
void makeLeaves(Server &server, const QString &schema);
/// Makes leaves that are on this server the store's: their networks must have records.
void attachLeaves(Server &server, int partition, int count);
/// @}

} // namespace partitions

} // namespace moratools
