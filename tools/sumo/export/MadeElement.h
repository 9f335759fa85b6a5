#pragma once

#include "tools/sumo/kept/KeptElement.h"

#include <initializer_list>
#include <vector>

namespace moratools {

/// An element made of an object of the store.
struct MadeElement {
    KeptElement element;
    QString object; ///< the object's name: one that came from SUMO begins with the element's id
    QString lost;   ///< what of the object SUMO has no word for, and why; empty where it has all
};

/// An element of that name with these attributes; those that are empty are left out.
inline KeptElement makeElement(const char *name,
                               std::initializer_list<std::pair<const char *, QString>> attributes) {
    KeptElement element{QLatin1String(name), {}, {}};
    for (const auto &attribute : attributes) {
        if (!attribute.second.isEmpty())
            element.attributes.emplace_back(QLatin1String(attribute.first), attribute.second);
    }
    return element;
}

} // namespace moratools
