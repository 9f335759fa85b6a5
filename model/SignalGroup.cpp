#include "SignalGroup.h"

SignalGroup::SignalGroup(QObject *parent) : QObject(parent) {}

SignalGroup::~SignalGroup() = default;

QList<ISignalPhase *> SignalGroup::phases() const {
    QList<ISignalPhase *> phases;
    for (SignalPhase *phase : mlPhase)
        phases.append(phase);
    return phases;
}

SignalPhase *SignalGroup::findPhaseByName(const QString &phaseName) const {
    for (SignalPhase *phase : mlPhase) {
        if (phase->name == phaseName)
            return phase;
    }
    return nullptr;
}

std::unique_ptr<SignalGroup> SignalGroup::clone() const {
    auto copy = std::make_unique<SignalGroup>();
    copy->signalGroupID = signalGroupID;
    copy->name = name;
    copy->timeLength = timeLength;
    copy->startTime = startTime;
    copy->endTime = endTime;
    copy->mlPhase = OwningList<SignalPhase>(mlPhase);
    return copy;
}
