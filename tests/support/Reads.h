#pragma once

#include <set>
#include <string>

/// What the engine of gDB, a file, asks leave for while this lives: reading tables, and questions for columns
/// ("a pragma").
class Reads {
public:
    Reads();
    /// One of them is denied.
    explicit Reads(std::string denied);
    ~Reads();
    Reads(const Reads &) = delete;
    Reads &operator=(const Reads &) = delete;

    const std::set<std::string> &tables() const { return mTables; }

private:
    static int onRead(void *self, int action, const char *name, const char *, const char *, const char *);

    std::string mDenied;
    std::set<std::string> mTables;
};
