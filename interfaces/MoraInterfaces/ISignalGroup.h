#pragma once

#include "MoraInterfacesExport.h"

#include <QList>
#include <QString>

class ISignalPhase;

/// A signal plan.
class MORAINTERFACES_EXPORT ISignalGroup {
public:
    virtual ~ISignalGroup();

    virtual QString groupName() const = 0;
    virtual void setName(const QString &name) = 0;
    /// The phases in the group's order; the group keeps owning them.
    virtual QList<ISignalPhase *> phases() const = 0;
};
