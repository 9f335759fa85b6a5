#pragma once

#include <QString>

namespace Online {

/// One step of a signal phase: a colour and how long it shows.
struct ColorInterval {
    ColorInterval(const QString &colorWord, int duration) : color(colorWord), interval(duration) {}

    QString color; ///< display word of the colour
    int interval;  ///< duration, in the unit of the signal plan
};

} // namespace Online
