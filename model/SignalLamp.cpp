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

std::unique_ptr<SignalLamp> SignalLamp::clone() const {
    auto copy = std::make_unique<SignalLamp>();
    copy->signalLampID = signalLampID;
    copy->name = name;
    copy->mpPhase = mpPhase;
    copy->laneID = laneID;
    copy->toLaneID = toLaneID;
    copy->x = x;
    copy->y = y;
    copy->z = z;
    return copy;
}
