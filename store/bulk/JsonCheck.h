#pragma once

#include "model/MoraStoreExport.h"

#include <QByteArray>

/// Whether @p text becomes a JSON object as StoredJson reads it, without building one.
MORASTORE_EXPORT bool isJsonObject(const QByteArray &text);
