#pragma once

#include "ColorInterval.h"
#include "MoraInterfacesExport.h"

#include <QList>

class ISignalLamp;

/// One phase of a signal group: a sequence of colours and the lamps that show it.
class MORAINTERFACES_EXPORT ISignalPhase {
public:
    virtual ~ISignalPhase();

    virtual QString phaseName() const = 0;
    virtual void setPhaseName(const QString &name) = 0;
    /// The colour intervals in the order they are shown.
    virtual QList<Online::ColorInterval> listColor() const = 0;
    virtual void setColorList(const QList<Online::ColorInterval> &colors) = 0;
    /// The lamps of the phase; they keep their owner.
    virtual QList<ISignalLamp *> signalLamps() const = 0;
};
