#pragma once

#include <functional>
#include <string>

/// Calls of the system that this process makes, as far as its test program can get in between (Linux with
/// glibc).
namespace systemcalls {

/// Whether anything below has an effect.
extern const bool canWatch;

/// Notes from now on, in their order, what is done to files: "rename", "sync file MODE", "sync folder", and
/// "narrow MODE" where permissions are taken away from a file. MODE is octal, the permissions afterwards.
void watch();
/// What was noted since, joined by ", "; notes nothing more.
std::string noted();

/// Calls @p action once, before the next file is brought to the disk.
void beforeSync(std::function<void()> action);

/// No thread can be made while there is such an object.
struct NoThreads {
    NoThreads();
    ~NoThreads();
    NoThreads(const NoThreads &) = delete;
    NoThreads &operator=(const NoThreads &) = delete;
};

} // namespace systemcalls
