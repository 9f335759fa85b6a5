#pragma once

// Everything that libMoraInterfaces declares.
#include "ColorInterval.h"
#include "IBusStationLine.h"
#include "IMoraInterface.h"
#include "IMoraPlugin.h"
#include "IRoadNet.h"
#include "ISignalGroup.h"
#include "ISignalLamp.h"
#include "ISignalPhase.h"
#include "PlainRecords.h"
