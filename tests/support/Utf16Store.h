#pragma once

#include <QString>

/// Makes the SQLite file at @p path one that keeps its texts as UTF-16, with the same tables and rows. No
/// connection may be open on it.
void makeUtf16(const QString &path);
