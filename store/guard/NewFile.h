#pragma once

#include "model/MoraStoreExport.h"

#include <QString>

/// A new file under a name that nobody else has, in the folder of the file that it is to become. It is
/// removed again, with what SQLite keeps beside it, unless it was published.
class MORASTORE_EXPORT NewFile {
public:
    /// Makes the file, empty. Refused when it cannot be made, when there is a file @p wanted, and when a
    /// journal of such a name lies there, which SQLite would take for the new file's.
    explicit NewFile(const QString &wanted);
    ~NewFile();
    NewFile(const NewFile &) = delete;
    NewFile &operator=(const NewFile &) = delete;

    /// Why it was refused, as a sentence that names the file and says what to do; empty where it was not.
    const QString &refusal() const { return mRefusal; }
    const QString &path() const { return mPath; }
    /// Gives the file the name that was wanted; false, with a refusal, when another program has taken the name
    /// meanwhile. What that made is not touched.
    bool publish();

private:
    bool refuse(const QString &sentence);
    bool cannotBeMade(const QString &reason);

    QString mWanted;
    QString mPath; ///< empty when there is nothing to be removed
    QString mRefusal;
};
