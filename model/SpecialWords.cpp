#include "SpecialWords.h"

namespace {

struct Word {
    const char16_t *chinese;
    const char16_t *english;
};

const Word VOCABULARY[] = {
    {u"机动车道", u"MotorizedLane"},
    {u"机非共享车道", u"MixedLane"},
    {u"非机动车道", u"NonMotorizedLane"},
    {u"公交专用道", u"BusLane"},
    {u"激进型", u"Positive"},
    {u"温和型", u"Normal"},
    {u"保守型", u"Negative"},
    {u"自由行驶", u"FreeRunning"},
    {u"左侧", u"LeftSide"},
    {u"右侧", u"RightSide"},
    {u"高速路", u"Freeway"},
    {u"高速公路", u"Freeway"},
    {u"城市快速路", u"Expressway"},
    {u"匝道", u"Ramp"},
    {u"城市主干道", u"ArterialRoad"},
    {u"城市主要干道", u"ArterialRoad"},
    {u"城市支路", u"AccessRoad"},
    {u"次要干道", u"SecondaryRoad"},
    {u"城市次干道", u"SecondaryRoad"},
    {u"人行道", u"Sidewalk"},
    {u"机非共享", u"MixedLane"},
    {u"路侧式", u"Curbside"},
    {u"港湾式", u"BusBay"},
    {u"标准检测器", u"StandardDetector"},
    {u"小客车", u"Car"},
    {u"大客车", u"Coach"},
    {u"公交车", u"Bus"},
    {u"货车", u"Truck"},
    {u"电动车", u"Escooter"},
    {u"自行车", u"Bicycle"},
    {u"行人", u"Pedestrian"},
    {u"工程车", u"EngineeringVehicle"},
    {u"消防车", u"FireEngine"},
    {u"救护车", u"Ambulance"},
    {u"大型飞机", u"Plane"},
    {u"小型飞机", u"Helicopter"},
    {u"大飞机", u"Plane"},
    {u"小飞机", u"Helicopter"},
    {u"默认", u"Default"},
    {u"红", u"Red"},
    {u"黄", u"Yellow"},
    {u"绿", u"Green"},
    {u"灰", u"Grey"},
    {u"白", u"White"},
    {u"是", u"Yes"},
    {u"否", u"No"},
};

} // namespace

SpecialWords::SpecialWords() {
    for (const Word &word : VOCABULARY)
        mEnglishByChinese.insert(QString::fromUtf16(word.chinese), QString::fromUtf16(word.english));
    initVars();
}

void SpecialWords::initVars() {
    mlWord.clear();
    for (const Word &word : VOCABULARY)
        mlWord.append(getWord(QString::fromUtf16(word.chinese)));
}

QString SpecialWords::getWord(const QString &key) const {
    return dbIsEnglish && langIsNotZh ? english(key) : key;
}

QString SpecialWords::trZhToEn(const QString &word) const {
    return dbIsEnglish && langIsNotZh ? english(word) : word;
}

QString SpecialWords::trEnToZh(const QString &word) const {
    // A Chinese store holds display words already, and a host in another language shows the stored ones.
    return dbIsEnglish && !langIsNotZh ? mEnglishByChinese.key(word, word) : word;
}

QString SpecialWords::english(const QString &word) const {
    return mEnglishByChinese.value(word, word);
}
