#pragma once

#include "MoraStoreExport.h"
#include "SignalPhase.h"

#include <MoraInterfaces/ISignalLamp.h>

#include <QObject>
#include <QPointer>
#include <QString>

#include <memory>

/// A signal head: shows a phase's colours to the traffic from one lane to another.
class MORASTORE_EXPORT SignalLamp : public QObject, public ISignalLamp {
    Q_OBJECT

public:
    explicit SignalLamp(QObject *parent = nullptr);
    /// Leaves the lamps of its phase.
    ~SignalLamp() override;

    /// A copy that the caller owns, of the same id and phase and without a parent. It is not among the lamps of
    /// the phase: setPhase() enters it.
    std::unique_ptr<SignalLamp> clone() const;

    /// Sets the phase (null for none) and enters the lamp once into that phase's lamps; a former phase loses
    /// it.
    void setPhase(SignalPhase *phase);

    long signalLampID = 0;
    QString name;
    QPointer<SignalPhase> mpPhase; ///< not owned; null once the phase is gone
    int laneID = 0;
    int toLaneID = 0;
    double x = 0;
    double y = 0;
    double z = 0;
};
