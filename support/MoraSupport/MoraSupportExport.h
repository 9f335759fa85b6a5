#pragma once

#include <QtGlobal>

/// Marks what libMoraSupport offers.
#ifdef MORASUPPORT_LIBRARY
#define MORASUPPORT_EXPORT Q_DECL_EXPORT
#else
#define MORASUPPORT_EXPORT Q_DECL_IMPORT
#endif
