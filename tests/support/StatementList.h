#pragma once

#include "store/DBTools.h"
#include "store/DBTools_V6.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <functional>

/// What operations execute on gDB, operation by operation. A list that is derived from it does something else
/// with every operation.
class StatementList {
public:
    StatementList() = default;
    virtual ~StatementList() = default;
    StatementList(const StatementList &) = delete;
    StatementList &operator=(const StatementList &) = delete;

    struct Section {
        QString name;
        QStringList lines;
    };

    /// Records what @p call executes, then what it was refused, under the name of the operation.
    virtual void add(const QString &operation, const std::function<void()> &call);
    /// Records a call whose argument asks for a transaction of its own. Before, the call is tried without
    /// inside a transaction of the caller's, which is rolled back: it must execute the same but for the
    /// frame.
    virtual void addWrite(const QString &operation, const std::function<void(bool)> &call);

    const QList<Section> &sections() const { return mSections; }

    /// The network that the operations work in; it exists and is the current one.
    static constexpr long kNet = 1;

private:
    QList<Section> mSections;
};

/// The operations of a family, as a file of tests/store/statements registers them. The recorders get a store
/// with nothing in it but what its template brings; what they do outside add() is not recorded.
///
/// Both recorders are one template over the operation class. Operations that only one class has, or that
/// differ between the classes, stand in an `if constexpr`; those of DBTools_V6 are named with their class.
struct StatementFamily {
    using Recorder = void (*)(StatementList &list);

    StatementFamily(const char *familyName, Recorder recorder, Recorder recorderV6);

    const char *name;
    Recorder dbTools;
    Recorder dbToolsV6;

    /// All families by name.
    static QList<StatementFamily> all();
};
