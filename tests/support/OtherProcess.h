#pragma once

#include <QString>

/// Another process that holds the store file of gDB: a connection of its own has the same locks.
class OtherProcess {
public:
    enum class Holds {
        File,   ///< nothing can be read
        Pen,    ///< nothing can be written
        Reading ///< nothing can be committed
    };
    explicit OtherProcess(Holds what);
    /// Lets go. Statements on gDB that have to wait fail at once from then on, unless it is opened again.
    ~OtherProcess();
    OtherProcess(const OtherProcess &) = delete;
    OtherProcess &operator=(const OtherProcess &) = delete;

    void letGo();
    /// Lets go when a statement on gDB waits for the first time: that one fails, later ones find the file
    /// free.
    void letGoAtTheFirstWait() { mIsPatient = false; }
    /// How many statements on gDB have waited, in vain.
    int waits() const { return mWaits; }

private:
    static int onWait(void *self, int times);

    QString mName;
    int mWaits = 0;
    bool mIsPatient = true;
    bool mHolds = true;
};
