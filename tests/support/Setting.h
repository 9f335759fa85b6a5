#pragma once

#include <QtGlobal>

/// A number that the environment gives for long runs, or that of the usual one.
inline int setting(const char *name, int standard) {
    bool isNumber = false;
    const int value = qEnvironmentVariableIntValue(name, &isNumber);
    return isNumber ? value : standard;
}
