#pragma once

#include "MoraStoreExport.h"
#include "NetIndex.h"

#include <MoraInterfaces/ISignalPhase.h>

#include <QObject>
#include <QStringList>

#include <memory>

class SignalLamp;

/// A phase of a signal group: colours in sequence, and the lamps that show them.
class MORASTORE_EXPORT SignalPhase : public QObject, public ISignalPhase {
    Q_OBJECT

public:
    explicit SignalPhase(QObject *parent = nullptr);
    /// The lamps stay with their owners, without a phase.
    ~SignalPhase() override;

    /// A copy that the caller owns, of the same id and without a parent, in no network's tables. The lamps stay
    /// those of this phase.
    std::unique_ptr<SignalPhase> clone() const;

    QString phaseName() const override { return name; }
    void setPhaseName(const QString &phaseName) override { name = phaseName; }
    QList<Online::ColorInterval> listColor() const override { return mlColor; }
    void setColorList(const QList<Online::ColorInterval> &colors) override { mlColor = colors; }
    QList<ISignalLamp *> signalLamps() const override;

    /// Each colour followed by its duration, joined by commas, as in "红30,绿25,黄3".
    QString signalColorInStr() const;

    long signalPhaseID = 0;
    int serialNumber = 0; ///< position in the group
    QString name;
    QList<Online::ColorInterval> mlColor; ///< colours as display words
    /// The colours as a read found them, where one of the displayed would be written otherwise.
    QStringList storedColors;
    QList<SignalLamp *> mlLamp; ///< not owned; filled by SignalLamp::setPhase

    /// The network whose tables have the object; null while none has.
    Net *net() const { return mPlace.net(); }

private:
    friend class NetIndex<SignalPhase>;

    NetIndex<SignalPhase>::Place mPlace;
};
