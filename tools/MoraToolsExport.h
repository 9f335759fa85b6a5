#pragma once

#include <QtGlobal>

/// Marks what libMoraTools offers; everything else stays inside the library.
#if defined(MORASTORE_STATIC)
#define MORATOOLS_EXPORT
#elif defined(MORATOOLS_LIBRARY)
#define MORATOOLS_EXPORT Q_DECL_EXPORT
#else
#define MORATOOLS_EXPORT Q_DECL_IMPORT
#endif
