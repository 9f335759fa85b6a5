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
