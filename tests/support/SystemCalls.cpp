#include "tests/support/SystemCalls.h"

#include <QStringList>

#include <utility>

#ifdef __GLIBC__
#include <cerrno>
#include <cstdio>
#include <dlfcn.h>
#include <pthread.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace {

bool gWatching = false;
bool gNoThreads = false;
QStringList gNotes;
std::function<void()> gBeforeSync;

[[maybe_unused]] void note(const QString &what) {
    if (gWatching)
        gNotes.append(what);
}

} // namespace

namespace systemcalls {

void watch() {
    gNotes.clear();
    gWatching = true;
}

std::string noted() {
    gWatching = false;
    return gNotes.join(QLatin1String(", ")).toStdString();
}

void beforeSync(std::function<void()> action) {
    gBeforeSync = std::move(action);
}

NoThreads::NoThreads() {
    gNoThreads = true;
}

NoThreads::~NoThreads() {
    gNoThreads = false;
}

} // namespace systemcalls

#ifdef __GLIBC__

const bool systemcalls::canWatch = true;

namespace {

/// The function that would have been called, had this program none of that name.
template <class Function>
Function *following(const char *name, Function * /*unused*/) {
    return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

constexpr mode_t kPermissions = 07777;

QString octal(mode_t mode) {
    return QString::number(mode & kPermissions, 8);
}

void noteChange(const struct stat &before, mode_t mode) {
    if ((before.st_mode & kPermissions & ~mode) != 0)
        note(QStringLiteral("narrow ") + octal(mode));
}

} // namespace

// The libraries find these before those of the system.
// NOLINTBEGIN(readability-inconsistent-declaration-parameter-name): the system's names are reserved ones.
extern "C" {

Q_DECL_EXPORT int fsync(int file) {
    if (const auto action = std::exchange(gBeforeSync, nullptr))
        action();
    struct stat status = {};
    if (fstat(file, &status) == 0)
        note(S_ISDIR(status.st_mode) ? QStringLiteral("sync folder")
                                     : QStringLiteral("sync file ") + octal(status.st_mode));
    return following("fsync", &fsync)(file);
}

Q_DECL_EXPORT int fchmod(int file, mode_t mode) noexcept {
    struct stat status = {};
    if (fstat(file, &status) == 0)
        noteChange(status, mode);
    return following("fchmod", &fchmod)(file, mode);
}

Q_DECL_EXPORT int chmod(const char *path, mode_t mode) noexcept {
    struct stat status = {};
    if (stat(path, &status) == 0)
        noteChange(status, mode);
    return following("chmod", &chmod)(path, mode);
}

Q_DECL_EXPORT int rename(const char *from, const char *to) noexcept {
    note(QStringLiteral("rename"));
    return following("rename", &rename)(from, to);
}

Q_DECL_EXPORT int pthread_create(pthread_t *thread, const pthread_attr_t *attributes, void *(*start)(void *),
                                 void *argument) noexcept {
    return gNoThreads ? EAGAIN
                      : following("pthread_create", &pthread_create)(thread, attributes, start, argument);
}

} // extern "C"
// NOLINTEND(readability-inconsistent-declaration-parameter-name)

#else

const bool systemcalls::canWatch = false;

#endif
