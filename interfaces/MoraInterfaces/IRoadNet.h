#pragma once

#include "MoraInterfacesExport.h"

#include <QJsonObject>
#include <QPointF>
#include <QString>

/// What the host sees of a road network.
class MORAINTERFACES_EXPORT IRoadNet {
public:
    virtual ~IRoadNet();

    virtual long id() const = 0;
    virtual QString netName() const = 0;
    virtual QString url() const = 0;         ///< where the network was imported from
    virtual QString type() const = 0;        ///< kind of that source
    virtual QString bkgUrl() const = 0;      ///< path of the background image
    virtual QString explain() const = 0;     ///< free text
    virtual QPointF centerPoint() const = 0; ///< centre of the scene
    virtual QJsonObject otherAttrs() const = 0;
};
