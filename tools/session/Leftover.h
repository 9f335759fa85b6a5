#pragma once

#include <QString>

/// A file or a folder that goes, with what SQLite keeps beside it, when the user or the system ends the
/// process by a signal (SIGINT, SIGTERM, SIGHUP) while this object lives. Of several the youngest goes first;
/// a folder goes when it is empty by then. More than a handful at a time, and names of more than 4000 bytes,
/// stay.
class Leftover {
public:
    explicit Leftover(const QString &path);
    ~Leftover();

private:
    Q_DISABLE_COPY(Leftover)

    int mPlace;
};
