#pragma once

#include <QtGlobal>

/// Marks what libMoraStore offers to its hosts; everything else stays inside the library.
#if defined(MORASTORE_STATIC)
#define MORASTORE_EXPORT
#elif defined(MORASTORE_LIBRARY)
#define MORASTORE_EXPORT Q_DECL_EXPORT
#else
#define MORASTORE_EXPORT Q_DECL_IMPORT
#endif
