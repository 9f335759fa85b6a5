#include "SignalLamp.h"

SignalLamp::SignalLamp(QObject *parent) : QObject(parent) {}

SignalLamp::~SignalLamp() {
    setPhase(nullptr);
}

void SignalLamp::setPhase(SignalPhase *phase) {
    if (mpPhase)
        mpPhase->mlLamp.removeAll(this);
    mpPhase = phase;
    if (phase && !phase->mlLamp.contains(this))
        phase->mlLamp.append(this);
}
