#pragma once

#include <QString>

/// What a command is going to do with a store.
enum class Access { Read, Write };

/// Checks, without changing anything, that `path` is an SQLite file that holds a store, that it is complete,
/// and that it can be had now for `access`. Throws `Failure` with the reason otherwise.
void requireStore(const QString &path, Access access);
