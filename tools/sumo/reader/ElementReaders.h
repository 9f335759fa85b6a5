#pragma once

#include "tools/sumo/reader/SumoCompanions.h"
#include "tools/sumo/reader/XmlInput.h"

namespace moratools {

/// A companion file while it is read.
struct CompanionReading {
    XmlInput &input;
    SumoCompanions &into;
    QHash<QString, int> inlineRoutes; ///< edges, as written, of routes without stops that belong to vehicles

    SumoSource here() const { return {into.files.size() - 1, input.line(), input.elementNumber()}; }
    /// Counts the current element as one that nothing reads, and leaves it.
    void leaveUnread() {
        ++into.unread[input.name().toString()];
        input.skipElement();
    }
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
