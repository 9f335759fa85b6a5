#pragma once

#include "tools/MoraToolsExport.h"

#include <QString>

namespace moratools::schema {

enum class FileKind { Network, Companion };

enum class Target {
    Column,     ///< of a table
    Attributes, ///< kept as it stands in the attributes of an object
    LeftOut,
};

/// Where something that SUMO's files say goes.
struct Fate {
    Target target = Target::Attributes;
    QString where;         ///< "Lane.width", or "Link.otherAttrsJson sumo"; empty for what is left out
    QString reason;        ///< of what is left out
    bool isListed = false; ///< false: SUMO 1.15 does not know it there
};

/// The fate of an attribute of the element at `path` ("edge/lane", "." for the root); of the element itself
/// where `attribute` is empty. What the list does not have is kept where its surroundings are.
MORATOOLS_EXPORT Fate fateOf(FileKind kind, const QString &path, const QString &attribute = {});

/// The fate of what stands at `path` where nothing is made of it, but it is kept.
MORATOOLS_EXPORT Fate fateOfKept(FileKind kind, const QString &path);

/// The whole list as tables in Markdown.
MORATOOLS_EXPORT QString asMarkdown();

} // namespace moratools::schema
