#pragma once

#include <QByteArray>

/// Whether @p text becomes a JSON object as StoredJson reads it, without building one.
bool isJsonObject(const QByteArray &text);
