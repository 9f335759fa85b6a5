#pragma once

#include <QtGlobal>

#include <functional>

/// How far the load or the save of a network has come.
struct NetStep {
    const char *table; ///< the table that is being read or written
    qint64 done;       ///< its rows so far
    qint64 total;      ///< its rows in all
};

/// Hears how a load or save of a network comes along; an answer of false cancels it.
using NetProgress = std::function<bool(const NetStep &)>;
