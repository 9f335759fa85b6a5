#pragma once

#include "MoraStoreExport.h"

#include <QString>

/// The fixed vocabulary of stores, as constants: signal colours, kinds of lanes, links, vehicles and stops, ...
///
///     phase->mlColor.append({Words::Red, 30});
///     lane->actionType = gSpecialWords.getWord(Words::BusLane);
///     if (Words::Red.names(step.color))
///
/// A constant is a display word, which for the format is the Chinese one: signal colours, the types of links
/// and the names of vehicle types and link types are translated as they are written
/// (SpecialWords::trZhToEn()). Words of lanes, detectors and stops are written as they stand: getWord() gives
/// the one for the store that is open.
namespace Words {

/// An entry of the vocabulary in both languages.
struct MORASTORE_EXPORT Word {
    const char16_t *chinese;
    const char16_t *english;
    const char16_t *synonym = nullptr; ///< the other display word that shares the stored one

    /// The display word.
    operator QString() const { return QString::fromUtf16(chinese); }
    QString inEnglish() const { return QString::fromUtf16(english); }
    /// Whether @p text, of a store or a host in either language, is this word or its synonym.
    bool names(const QString &text) const;
};

/// Whether @p text is any of the words, in either language. Link types and vehicle types may have names of
/// their own; a signal colour that is none of them means nothing to a simulation.
MORASTORE_EXPORT bool isKnown(const QString &text);

// Some display words share a stored one: a synonym that was stored comes back as either.
inline constexpr Word MotorizedLane{u"机动车道", u"MotorizedLane"};
inline constexpr Word MixedLane{u"机非共享车道", u"MixedLane", u"机非共享"};
inline constexpr Word NonMotorizedLane{u"非机动车道", u"NonMotorizedLane"};
inline constexpr Word BusLane{u"公交专用道", u"BusLane"};
inline constexpr Word Positive{u"激进型", u"Positive"};
inline constexpr Word Normal{u"温和型", u"Normal"};
inline constexpr Word Negative{u"保守型", u"Negative"};
inline constexpr Word FreeRunning{u"自由行驶", u"FreeRunning"};
inline constexpr Word LeftSide{u"左侧", u"LeftSide"};
inline constexpr Word RightSide{u"右侧", u"RightSide"};
inline constexpr Word Freeway{u"高速路", u"Freeway", u"高速公路"};
inline constexpr Word FreewaySynonym{u"高速公路", u"Freeway", u"高速路"};
inline constexpr Word Expressway{u"城市快速路", u"Expressway"};
inline constexpr Word Ramp{u"匝道", u"Ramp"};
inline constexpr Word ArterialRoad{u"城市主干道", u"ArterialRoad", u"城市主要干道"};
inline constexpr Word ArterialRoadSynonym{u"城市主要干道", u"ArterialRoad", u"城市主干道"};
inline constexpr Word AccessRoad{u"城市支路", u"AccessRoad"};
inline constexpr Word SecondaryRoad{u"次要干道", u"SecondaryRoad", u"城市次干道"};
inline constexpr Word SecondaryRoadSynonym{u"城市次干道", u"SecondaryRoad", u"次要干道"};
inline constexpr Word Sidewalk{u"人行道", u"Sidewalk"};
inline constexpr Word MixedLaneSynonym{u"机非共享", u"MixedLane", u"机非共享车道"};
inline constexpr Word Curbside{u"路侧式", u"Curbside"};
inline constexpr Word BusBay{u"港湾式", u"BusBay"};
inline constexpr Word StandardDetector{u"标准检测器", u"StandardDetector"};
inline constexpr Word Car{u"小客车", u"Car"};
inline constexpr Word Coach{u"大客车", u"Coach"};
inline constexpr Word Bus{u"公交车", u"Bus"};
inline constexpr Word Truck{u"货车", u"Truck"};
inline constexpr Word Escooter{u"电动车", u"Escooter"};
inline constexpr Word Bicycle{u"自行车", u"Bicycle"};
inline constexpr Word Pedestrian{u"行人", u"Pedestrian"};
inline constexpr Word EngineeringVehicle{u"工程车", u"EngineeringVehicle"};
inline constexpr Word FireEngine{u"消防车", u"FireEngine"};
inline constexpr Word Ambulance{u"救护车", u"Ambulance"};
inline constexpr Word Plane{u"大型飞机", u"Plane", u"大飞机"};
inline constexpr Word Helicopter{u"小型飞机", u"Helicopter", u"小飞机"};
inline constexpr Word PlaneSynonym{u"大飞机", u"Plane", u"大型飞机"};
inline constexpr Word HelicopterSynonym{u"小飞机", u"Helicopter", u"小型飞机"};
inline constexpr Word Default{u"默认", u"Default"};
inline constexpr Word Red{u"红", u"Red"};
inline constexpr Word Yellow{u"黄", u"Yellow"};
inline constexpr Word Green{u"绿", u"Green"};
inline constexpr Word Grey{u"灰", u"Grey"};
inline constexpr Word White{u"白", u"White"};
inline constexpr Word Yes{u"是", u"Yes"};
inline constexpr Word No{u"否", u"No"};

/// All of them, in the order of SpecialWords::mlWord.
inline constexpr Word kAll[] = {MotorizedLane,
                                MixedLane,
                                NonMotorizedLane,
                                BusLane,
                                Positive,
                                Normal,
                                Negative,
                                FreeRunning,
                                LeftSide,
                                RightSide,
                                Freeway,
                                FreewaySynonym,
                                Expressway,
                                Ramp,
                                ArterialRoad,
                                ArterialRoadSynonym,
                                AccessRoad,
                                SecondaryRoad,
                                SecondaryRoadSynonym,
                                Sidewalk,
                                MixedLaneSynonym,
                                Curbside,
                                BusBay,
                                StandardDetector,
                                Car,
                                Coach,
                                Bus,
                                Truck,
                                Escooter,
                                Bicycle,
                                Pedestrian,
                                EngineeringVehicle,
                                FireEngine,
                                Ambulance,
                                Plane,
                                Helicopter,
                                PlaneSynonym,
                                HelicopterSynonym,
                                Default,
                                Red,
                                Yellow,
                                Green,
                                Grey,
                                White,
                                Yes,
                                No};

} // namespace Words
