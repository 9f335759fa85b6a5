#pragma once

#include <QtGlobal>

/// Marks what libMoraSupport offers.
#if defined(MORASTORE_STATIC)
#define MORASUPPORT_EXPORT
#elif defined(MORASUPPORT_LIBRARY)
#define MORASUPPORT_EXPORT Q_DECL_EXPORT
#else
#define MORASUPPORT_EXPORT Q_DECL_IMPORT
#endif
