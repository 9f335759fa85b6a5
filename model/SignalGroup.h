#pragma once

#include "MoraStoreExport.h"
#include "OwningList.h"
#include "SignalPhase.h"

#include <MoraInterfaces/ISignalGroup.h>

#include <QObject>
#include <QString>

#include <memory>

/// A signal plan. It owns its phases: give a phase no QObject parent but its group.
class MORASTORE_EXPORT SignalGroup : public QObject, public ISignalGroup {
    Q_OBJECT

public:
    explicit SignalGroup(QObject *parent = nullptr);
    /// Deletes the phases.
    ~SignalGroup() override;

    /// A copy that the caller owns, of the same id and without a parent, with copies of the phases.
    std::unique_ptr<SignalGroup> clone() const;

    QString groupName() const override { return name; }
    void setName(const QString &groupName) override { name = groupName; }
    QList<ISignalPhase *> phases() const override;

    /// The first phase of exactly that name, or null.
    SignalPhase *findPhaseByName(const QString &phaseName) const;

    long signalGroupID = 0;
    QString name;
    int timeLength = 0; ///< cycle length; times are in the host's unit, like the phases' durations
    int startTime = 0;
    int endTime = 0;
    OwningList<SignalPhase> mlPhase;
};
