#pragma once

#include "MoraInterfacesExport.h"

#include <QJsonObject>

/// The host, as the libraries that it loads see it.
class MORAINTERFACES_EXPORT IMoraInterface {
public:
    virtual ~IMoraInterface();

    /// The host's settings; an empty object leaves every setting of the libraries as it is.
    virtual QJsonObject jsonSettings() const = 0;
};

/// The host's interface object. Null until the host sets it; the host keeps owning it.
extern MORAINTERFACES_EXPORT IMoraInterface *gpMoraInterface;
