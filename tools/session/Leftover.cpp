#include "tools/session/Leftover.h"

#include <QFile>

#include <csignal>
#include <cstdio>
#include <cstring>

namespace moratools {

namespace {

constexpr int kPlaces = 8;
constexpr int kLongestName = 4096;
constexpr const char *kSuffixes[] = {"-journal", "-wal", "-shm", ""};

// A signal may come at any time, also while memory is being allocated: the handler uses what lies here only.
char gNames[kPlaces][kLongestName];
volatile std::sig_atomic_t gIsUsed[kPlaces];

void removeAll(int signal) {
    for (int place = kPlaces - 1; place >= 0; --place) {
        if (!gIsUsed[place])
            continue;
        char *end = gNames[place] + std::strlen(gNames[place]);
        for (const char *suffix : kSuffixes) {
            std::memcpy(end, suffix, std::strlen(suffix) + 1);
            std::remove(gNames[place]);
        }
    }
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

/// A signal that the process was started to ignore (nohup) stays ignored.
void watch(int signal) {
    if (std::signal(signal, removeAll) == SIG_IGN)
        std::signal(signal, SIG_IGN);
}

void watchSignals() {
    static bool isWatching = false;
    if (isWatching)
        return;
    isWatching = true;
    watch(SIGINT);
    watch(SIGTERM);
#ifdef SIGHUP
    watch(SIGHUP);
#endif
}

/// The first place behind all that are used, or -1.
int freePlace() {
    int place = kPlaces;
    while (place > 0 && !gIsUsed[place - 1])
        --place;
    return place < kPlaces ? place : -1;
}

} // namespace

Leftover::Leftover(const QString &path) : mPlace(freePlace()) {
    constexpr int longestSuffix = 8;
    const QByteArray name = QFile::encodeName(path);
    if (name.size() + longestSuffix >= kLongestName)
        mPlace = -1;
    if (mPlace < 0)
        return;
    std::memcpy(gNames[mPlace], name.constData(), std::size_t(name.size()) + 1);
    gIsUsed[mPlace] = 1;
    watchSignals();
}

Leftover::~Leftover() {
    if (mPlace >= 0)
        gIsUsed[mPlace] = 0;
}

} // namespace moratools
