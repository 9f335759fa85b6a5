#pragma once

#include "tools/sumo/reader/SumoCompanions.h"
#include "tools/sumo/reader/XmlInput.h"

namespace moratools {

/// A companion file while it is read.
struct CompanionReading {
    XmlInput &input;
    SumoCompanions &into;
    int file;                         ///< its place in `into`
    QHash<QString, int> inlineRoutes; ///< edges, as written, of routes without stops that belong to vehicles

    SumoSource here() const { return {file, input.line(), input.elementNumber()}; }
};

/// Reads the current element to its end.
using ElementReader = void (*)(CompanionReading &);

/// The reader of an element of that name; null when it is of another kind.
ElementReader demandReader(const QStringRef &element);
ElementReader deviceReader(const QStringRef &element);
/// The reader of persons and flows of them.
void readPersons(CompanionReading &reading);

/// The attribute, or nothing where it is not given.
std::optional<double> optionalNumber(const Attributes &attributes, const char *name);
/// The words of an attribute, separated by blanks or commas.
QStringList words(const Attributes &attributes, const char *name);

} // namespace moratools
