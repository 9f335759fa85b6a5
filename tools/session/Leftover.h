#pragma once

#include "tools/MoraToolsExport.h"

#include <QString>

namespace moratools {

/// A file or a folder that goes, with what SQLite keeps beside it, when the user or the system ends the
/// process by a signal (SIGINT, SIGTERM, SIGHUP) while this object lives. Of several the youngest goes first;
/// a folder goes when it is empty by then. More than a handful at a time, and names of more than 4000 bytes,
/// stay.
class MORATOOLS_EXPORT Leftover {
public:
    explicit Leftover(const QString &path);
    ~Leftover();

private:
    Q_DISABLE_COPY(Leftover)

    int mPlace;
};

} // namespace moratools
