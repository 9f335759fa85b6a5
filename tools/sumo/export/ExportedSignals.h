#pragma once

#include "tools/sumo/export/ExportedRoads.h"
#include "tools/sumo/kept/Digests.h"
#include "tools/sumo/kept/KeptElement.h"

#include <QHash>
#include <QPair>

#include <optional>
#include <vector>

namespace moratools {

/// The signals of a network as SUMO has them: a group is a programme, a phase of it the letter of that index in the states,
/// a lamp says which connection goes by which letter.
class ExportedSignals {
public:
    /// Which letter of which signal a connection goes by.
    struct Control {
        QString tl;
        int index = 0;
    };

    /// Groups without a lamp, and lamps between lanes that nothing connects, are left out. `roads` must outlive this object.
    /// `elsewhere` are the programmes, as programmeKey() has them, that stand in other files than the network's.
    ExportedSignals(const ExportedRoads &roads, const Digests &digests, const QSet<QString> &elsewhere,
                    Names &names, LeftOut &leftOut);

    /// What controls those who go from one lane to the other; nothing where no lamp does.
    std::optional<Control> control(const Lane &from, const Lane &to) const;
    /// Whether a programme of that id is exported.
    bool hasProgramme(const QString &tl) const { return mTls.contains(tl); }

    /// A `<tlLogic>` for each group, in the order of the store. One that came from SUMO and was not edited is as it stood;
    /// in the others each change of any colour begins a phase, and those who cross the path of others that have green at the
    /// same time and go before them get the letter g.
    const std::vector<KeptElement> &programmes() const { return mProgrammes; }
    const std::vector<KeptElement> &programmesElsewhere() const { return mElsewhere; }

private:
    void findControls(LeftOut &leftOut);
    KeptElement programmeOf(const SignalGroup &group, const QString &tl, const QString &programID,
                            LeftOut &leftOut) const;
    void addPhases(KeptElement &programme, const SignalGroup &group) const;
    QString stateAt(const SignalGroup &group, int second) const;
    bool mustYield(const SignalGroup &group, int index, int second) const;

    const ExportedRoads &mRoads;
    QHash<const SignalPhase *, Control> mControlOfPhase;
    QHash<QPair<const Lane *, const Lane *>, Control> mControls;
    QHash<const SignalPhase *, std::vector<const LaneConnector *>> mShown;
    QSet<QString> mTls;
    std::vector<KeptElement> mProgrammes;
    std::vector<KeptElement> mElsewhere;
};

/// The ids of a `<tlLogic>`, "SIGNAL/PROGRAMME".
QString programmeKey(const KeptElement &programme);

} // namespace moratools
