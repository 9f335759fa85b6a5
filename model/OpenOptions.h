#pragma once

#include <QString>

/// What a store is opened for.
enum class StoreAccess {
    Read,   ///< as DBTools::openDatabaseReadOnly(): nothing of the store changes
    Write,  ///< as DBTools::openDatabase(): an SQLite store is brought to the current schema
    Upgrade ///< as Write; one of the first generation is brought forward, too
};

/// How the words of the fixed vocabulary (model/Words.h) are shown; a store holds them in Chinese or in English.
enum class ShownWords {
    AsStored, ///< as the store has them: what is read and written again stays as it is
    Chinese, ///< those of an English store are translated as they are read; single inserts write them as shown
    English  ///< those of a Chinese store stay Chinese
};

/// How a store is opened.
struct OpenOptions {
    /// A file that may not be written to (it, or its folder, is read-only) is opened for reading all the same;
    /// stores::isReadOnly() says so.
    StoreAccess access = StoreAccess::Upgrade;
    ShownWords words = ShownWords::AsStored;
    /// The name of the network to make current. Empty for the one that is to be opened by default, or else the
    /// one with the smallest id; a store without networks has none then.
    QString network = {};
};
