#include "host/Terminal.h"

#include <QtGlobal>

#ifdef Q_OS_WIN
#include <io.h>
#else
#include <unistd.h>
#endif

bool isTerminal(std::FILE *stream) {
#ifdef Q_OS_WIN
    return _isatty(_fileno(stream));
#else
    return isatty(fileno(stream));
#endif
}
