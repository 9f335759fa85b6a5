#pragma once

#include "store/core/Store.h"

#include <optional>
#include <vector>

/// What the upgrades of older SQLite stores are made of. A step asks first, acts in a transaction of its own,
/// and records a failed statement without stopping the steps after it.
namespace upgrade {

/// A table that older stores lack: the statement that creates it and, once it has succeeded, those that
/// follow.
struct TableStep {
    const char *table;
    const char *create;
    std::vector<const char *> then;
};

/// A column that older stores lack.
struct ColumnStep {
    const char *table;
    const char *column;
    const char *add;
};

extern const TableStep kVehicleDetector;
extern const TableStep kDetectorVehiType;

/// @{ Whether a step has to be taken; where the store cannot be asked it is given up, and no later step is.
bool isMissing(const Store &store, const QString &table);
bool isMissing(const Store &store, const ColumnStep &step);
/// @}

/// A column is there when the stored CREATE text of its table contains its name anywhere.
std::optional<bool> hasColumn(const QSqlDatabase &db, const ColumnStep &step, FailureList &failures);

/// Creates the table of @p step where it is missing.
void addTable(const Store &store, const TableStep &step);
/// Adds those of @p steps that are missing; the caller has a transaction open.
void addColumns(const Store &store, const std::vector<ColumnStep> &steps);

/// Creates the tables that the host's plug-in wants, each with a counter.
void addPluginTables(const Store &store);

} // namespace upgrade
