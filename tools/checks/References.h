#pragma once

#include "store/catalogue/Catalogue.h"

#include <QString>

namespace moratools {

class Checked;

/// The rows of a table of which a reference, which is none to a road, names nothing: "TABLE where ...", for the end
/// of a statement. Empty where the store lacks the column, or the table that it refers to.
QString danglingRows(const Checked &checked, const catalogue::Table &table,
                     const catalogue::Reference &reference);

} // namespace moratools
