#include "SignalPhase.h"

#include "SignalLamp.h"

#include <QStringList>

SignalPhase::SignalPhase(QObject *parent) : QObject(parent) {}

SignalPhase::~SignalPhase() = default;

QList<ISignalLamp *> SignalPhase::signalLamps() const {
    QList<ISignalLamp *> lamps;
    for (SignalLamp *lamp : mlLamp)
        lamps.append(lamp);
    return lamps;
}

QString SignalPhase::signalColorInStr() const {
    QStringList intervals;
    for (const Online::ColorInterval &step : mlColor)
        intervals.append(step.color + QString::number(step.interval));
    return intervals.join(QLatin1Char(','));
}

std::unique_ptr<SignalPhase> SignalPhase::clone() const {
    auto copy = std::make_unique<SignalPhase>();
    copy->signalPhaseID = signalPhaseID;
    copy->serialNumber = serialNumber;
    copy->name = name;
    copy->mlColor = mlColor;
    copy->storedColors = storedColors;
    return copy;
}
