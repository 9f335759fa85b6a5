#pragma once

#include "MoraInterfacesExport.h"

/// A signal head. The host handles lamps by identity; their data is in the implementing class.
class MORAINTERFACES_EXPORT ISignalLamp {
public:
    virtual ~ISignalLamp();
};
