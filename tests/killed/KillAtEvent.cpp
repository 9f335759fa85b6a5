#include <QtGlobal>

#ifdef Q_OS_UNIX

#include <csignal>
#include <sqlite3.h>
#include <unistd.h>

// morastore for tests: it kills itself before the event that MORASTORE_KILL_AT numbers. An event is a
// statement that SQLite begins on any connection, or a call that changes a file of SQLite's. Statements that
// only ask are none: nothing can have changed since the event before.

namespace {

int gEventsLeft = 0;

void countEvent() {
    if (gEventsLeft > 0 && --gEventsLeft == 0)
        std::raise(SIGKILL);
}

int onStatement(unsigned, void *, void *statement, void *) {
    const char *sql = sqlite3_sql(static_cast<sqlite3_stmt *>(statement));
    if (sqlite3_strnicmp(sql, "select", 6) != 0 && sqlite3_strnicmp(sql, "pragma", 6) != 0)
        countEvent();
    return 0;
}

int watch(sqlite3 *db, char **, const sqlite3_api_routines *) {
    return sqlite3_trace_v2(db, SQLITE_TRACE_STMT, onStatement, nullptr);
}

/// A system call of SQLite's file layer, counted before it is made.
template <int number, class Result, class... Arguments>
class Counted {
public:
    explicit Counted(const char *name) {
        sqlite3_vfs *vfs = sqlite3_vfs_find(nullptr);
        sOriginal = reinterpret_cast<Function>(vfs->xGetSystemCall(vfs, name));
        if (sOriginal)
            vfs->xSetSystemCall(vfs, name, reinterpret_cast<sqlite3_syscall_ptr>(call));
    }

private:
    using Function = Result (*)(Arguments...);
    static Result call(Arguments... arguments) {
        countEvent();
        return sOriginal(arguments...);
    }
    static inline Function sOriginal = nullptr;
};

struct Arm {
    Arm() {
        gEventsLeft = qEnvironmentVariableIntValue("MORASTORE_KILL_AT");
        sqlite3_auto_extension(reinterpret_cast<void (*)()>(watch));
        // Of the ways to write a page, the file layer has the one that its build found.
        Counted<1, ssize_t, int, const void *, std::size_t>("write");
        Counted<2, ssize_t, int, const void *, std::size_t, off_t>("pwrite");
        Counted<3, ssize_t, int, const void *, std::size_t, off_t>("pwrite64");
        Counted<4, int, int, off_t>("ftruncate");
        Counted<5, int, const char *>("unlink");
    }
} gArm;

} // namespace

#endif
