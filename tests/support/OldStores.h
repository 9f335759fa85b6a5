#pragma once

#include <QString>

/// Copies a template that no opening has touched to the new file @p path.
void copyTemplate(const char *templateName, const QString &path);

/// Makes a store as the first generation wrote it: one counter for everything, misspelt serial numbers, none
/// of the tables that came later, one route.
void makeFirstGenerationStore(const QString &path);
