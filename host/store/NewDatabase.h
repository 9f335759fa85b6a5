#pragma once

#include "host/store/StoreAddress.h"

/// Makes a store of generation 6 in an empty database on a PostgreSQL server, from the dump that the library
/// carries. A database that does not exist is made, where the user may. Throws `Failure`, and then there is
/// no database that was not there before, and nothing in one that was.
void makeDatabaseStore(const StoreAddress &address);
