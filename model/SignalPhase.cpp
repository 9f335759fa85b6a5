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
