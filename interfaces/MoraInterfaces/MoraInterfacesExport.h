#pragma once

#include <QtGlobal>

/// Marks what libMoraInterfaces offers to the host and to the libraries beside it.
#if defined(MORASTORE_STATIC)
#define MORAINTERFACES_EXPORT
#elif defined(MORAINTERFACES_LIBRARY)
#define MORAINTERFACES_EXPORT Q_DECL_EXPORT
#else
#define MORAINTERFACES_EXPORT Q_DECL_IMPORT
#endif
