#pragma once

#include "tools/sumo/kept/KeptElement.h"

#include <QByteArray>

#include <vector>

namespace moratools {

/// The elements of a text that is kept without a root (JunctionInside).
std::vector<KeptElement> elementsOf(const QByteArray &text);

} // namespace moratools
