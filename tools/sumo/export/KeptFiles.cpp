#include "tools/sumo/export/KeptFiles.h"

#include "tools/sumo/export/XmlFile.h"

#include <QFileInfo>
#include <QJsonArray>

#include <algorithm>
#include <iterator>

namespace moratools {

namespace {

const QString kId = QStringLiteral("id");

QString idOf(const KeptElement &element) {
    const QString *id = element.attribute(kId);
    return id ? *id : QString();
}

/// What vehicles, routes and persons stand in, and shares of turns.
bool isDemand(const QString &name) {
    static const QSet<QString> names{
        QStringLiteral("vehicle"),  QStringLiteral("trip"),          QStringLiteral("flow"),
        QStringLiteral("person"),   QStringLiteral("personFlow"),    QStringLiteral("container"),
        QStringLiteral("interval"), QStringLiteral("containerFlow"), QStringLiteral("edgeRelation"),
    };
    return names.contains(name);
}

/// Elements that SUMO takes for one another have one name.
QString kindOf(const QString &name) {
    static const QHash<QString, QString> kinds{
        {QStringLiteral("e1Detector"), QStringLiteral("inductionLoop")},
        {QStringLiteral("instantInductionLoop"), QStringLiteral("inductionLoop")},
        {QStringLiteral("e2Detector"), QStringLiteral("laneAreaDetector")},
        {QStringLiteral("e3Detector"), QStringLiteral("entryExitDetector")},
        {QStringLiteral("trainStop"), QStringLiteral("busStop")},
    };
    return kinds.value(name, name);
}

/// An import calls what it makes of an element by its id, and by more after a blank where it makes several objects.
bool isMadeOf(const MadeElement &made, const KeptElement &element) {
    const QString id = idOf(element);
    return kindOf(made.element.name) == kindOf(element.name) &&
           (made.object == id || made.object.startsWith(id + QLatin1Char(' ')));
}

/// Attributes that say the same as one that an object has a column for, in other words.
bool saysPlaceOrTime(const QString &attribute) {
    static const QSet<QString> names{
        QStringLiteral("pos"),           QStringLiteral("startPos"), QStringLiteral("endPos"),
        QStringLiteral("length"),        QStringLiteral("lane"),     QStringLiteral("lanes"),
        QStringLiteral("freq"),          QStringLiteral("period"),   QStringLiteral("vTypes"),
        QStringLiteral("probabilities"), QStringLiteral("edges")};
    return names.contains(attribute);
}

/// The element of the changed object, with what the store has no column for from the one that was kept.
KeptElement merged(KeptElement made, const KeptElement &kept) {
    made.name = kept.name;
    for (const auto &attribute : kept.attributes) {
        if (attribute.first == kId || attribute.first == QLatin1String("vClass") ||
            attribute.first == QLatin1String("file") ||
            (!made.attribute(attribute.first) && !saysPlaceOrTime(attribute.first)))
            made.setAttribute(attribute.first, attribute.second);
    }
    std::copy_if(kept.children.begin(), kept.children.end(), std::back_inserter(made.children),
                 [&made](const KeptElement &child) {
                     return child.name != QLatin1String("vType") &&
                            std::none_of(made.children.begin(), made.children.end(),
                                         [&child](const KeptElement &own) { return own.name == child.name; });
                 });
    return made;
}

class Writer {
public:
    Writer(const KeptFiles::Contents &contents, std::vector<MadeElement> &made, LeftOut &leftOut)
        : mContents(contents), mMade(made), mLeftOut(leftOut), mIsTaken(made.size()) {
        for (const KeptElement &programme : contents.controls.programmesElsewhere())
            mProgrammes.insert(programmeKey(programme), programme);
        for (const Link *link : contents.roads.links()) {
            mEdges.insert(contents.roads.names().of(link));
            for (int lane = 0; lane < contents.roads.laneCount(*link); ++lane)
                mLanes.insert(contents.roads.laneId(*link, lane));
        }
    }

    void write(const KeptEntry &entry, XmlFile &file);
    /// Leaves in `made` what no file has.
    void finish();

private:
    void writeMade(const KeptElement &element, XmlFile &file);
    void take(const KeptElement &element);
    bool leadsNowhere(const KeptElement &element) const;

    const KeptFiles::Contents &mContents;
    std::vector<MadeElement> &mMade;
    LeftOut &mLeftOut;
    std::vector<bool> mIsTaken;
    QHash<QString, KeptElement> mProgrammes;
    QSet<QString> mEdges;
    QSet<QString> mLanes;
};

void Writer::write(const KeptEntry &entry, XmlFile &file) {
    const KeptElement &element = entry.element;
    if (isDemand(element.name)) {
        if (mContents.withDemand)
            file.write(element);
    } else if (element.name == QLatin1String("tlLogic")) {
        const auto programme = mProgrammes.constFind(programmeKey(element));
        if (programme != mProgrammes.constEnd())
            file.write(*programme);
    } else if (!entry.of.isEmpty() && mContents.digests.of(element) != entry.of) {
        writeMade(element, file);
        take(element);
    } else if (leadsNowhere(element)) {
        mLeftOut.add(element.name,
                     QStringLiteral("\"%1\" (it is on an edge or a lane that is gone)").arg(idOf(element)));
        take(element);
    } else {
        file.write(element);
        take(element);
    }
}

void Writer::writeMade(const KeptElement &element, XmlFile &file) {
    // Types stand within their distribution; changed ones stand before it.
    for (const KeptElement &child : element.children) {
        if (child.name == QLatin1String("vType"))
            writeMade(child, file);
    }
    for (std::size_t i = 0; i < mMade.size(); ++i) {
        if (!mIsTaken[i] && isMadeOf(mMade[i], element)) {
            KeptElement changed = merged(mMade[i].element, element);
            // Of several objects each keeps its own id.
            if (mMade[i].object != idOf(element))
                changed.setAttribute(kId, idOf(mMade[i].element));
            file.write(changed);
            mIsTaken[i] = true;
            if (!mMade[i].lost.isEmpty())
                mLeftOut.add(QStringLiteral("figures of vehicle types"), mMade[i].lost);
        }
    }
}

void Writer::take(const KeptElement &element) {
    for (std::size_t i = 0; i < mMade.size(); ++i)
        mIsTaken[i] = mIsTaken[i] || isMadeOf(mMade[i], element);
    for (const KeptElement &child : element.children) {
        if (child.name == QLatin1String("vType"))
            take(child);
    }
}

bool Writer::leadsNowhere(const KeptElement &element) const {
    const auto hasStranger = [](const QString *list, const QSet<QString> &known) {
        if (!list)
            return false;
        const QStringList ids = list->split(QLatin1Char(' '), Qt::SkipEmptyParts);
        return std::any_of(ids.begin(), ids.end(), [&known](const QString &id) {
            return !id.startsWith(QLatin1Char(':')) && !known.contains(id);
        });
    };
    return hasStranger(element.attribute(QStringLiteral("lane")), mLanes) ||
           hasStranger(element.attribute(QStringLiteral("lanes")), mLanes) ||
           hasStranger(element.attribute(QStringLiteral("edge")), mEdges) ||
           hasStranger(element.attribute(QStringLiteral("edges")), mEdges) ||
           std::any_of(element.children.begin(), element.children.end(),
                       [this](const KeptElement &child) { return leadsNowhere(child); });
}

void Writer::finish() {
    std::vector<MadeElement> left;
    for (std::size_t i = 0; i < mMade.size(); ++i) {
        if (!mIsTaken[i])
            left.push_back(std::move(mMade[i]));
    }
    mMade = std::move(left);
}

/// A store may come from anywhere: nothing but a name in the folder.
QString safeName(const QString &kept) {
    QString name = Names::usable(QFileInfo(kept).fileName());
    name.replace(QLatin1Char(':'), QLatin1Char('_'));
    while (name.startsWith(QLatin1Char('.')))
        name.remove(0, 1);
    return name.isEmpty() ? QStringLiteral("kept.xml") : name;
}

} // namespace

KeptFiles::KeptFiles(const QJsonObject &kept, const QSet<QString> &taken) {
    QSet<QString> known = taken;
    const QJsonArray files = kept.value(QStringLiteral("files")).toArray();
    for (const QJsonValue &json : files) {
        QString name = safeName(json[QLatin1String("name")].toString());
        const QString wanted = name;
        for (int number = 2; known.contains(name.toLower()); ++number)
            name = QStringLiteral("%1-%2").arg(QString::number(number), wanted);
        known.insert(name.toLower());
        mFiles.push_back({name, json[QLatin1String("role")].toString() == QLatin1String("routes"),
                          KeptList::fromJson(json[QLatin1String("elements")])});
        mFiles.back().elements.forEach([this](const KeptEntry &entry) { look(entry.element); });
    }
    for (auto attribute = mManners.cbegin(); attribute != mManners.cend(); ++attribute) {
        const auto most = std::max_element(attribute->cbegin(), attribute->cend());
        if (*most * 2 > mVehicles)
            mManner.emplace_back(attribute.key(), most.key());
    }
    if (!mBusTypes.isEmpty())
        mBusType = std::max_element(mBusTypes.cbegin(), mBusTypes.cend()).key();
}

void KeptFiles::look(const KeptElement &element) {
    static const QStringList manners{QStringLiteral("departLane"),  QStringLiteral("departPos"),
                                     QStringLiteral("departSpeed"), QStringLiteral("arrivalLane"),
                                     QStringLiteral("arrivalPos"),  QStringLiteral("arrivalSpeed")};
    mHasDemand = mHasDemand || isDemand(element.name);
    if (element.name == QLatin1String("tlLogic")) {
        mProgrammes.insert(programmeKey(element));
    } else if (element.name == QLatin1String("vType")) {
        const QString *vClass = element.attribute(QStringLiteral("vClass"));
        mVehicleClasses.insert(idOf(element), vClass ? *vClass : QStringLiteral("passenger"));
    } else if (element.name == QLatin1String("vTypeDistribution")) {
        for (const KeptElement &child : element.children)
            look(child);
    } else if (element.name == QLatin1String("route") || element.name == QLatin1String("routeDistribution")) {
        mRouteIds.insert(idOf(element));
        for (const KeptElement &child : element.children)
            look(child);
    } else if (element.name == QLatin1String("vehicle") || element.name == QLatin1String("trip") ||
               element.name == QLatin1String("flow")) {
        ++mVehicles;
        const bool isBus =
            element.attribute(QStringLiteral("line")) ||
            std::any_of(element.children.begin(), element.children.end(),
                        [](const KeptElement &child) { return child.attribute(QStringLiteral("busStop")); });
        if (const QString *type = element.attribute(QStringLiteral("type")); type && isBus)
            ++mBusTypes[*type];
        for (const QString &name : manners) {
            if (const QString *value = element.attribute(name))
                ++mManners[name][*value];
        }
    }
}

QStringList KeptFiles::names(bool hasRoutes) const {
    QStringList names;
    for (const File &file : mFiles) {
        if (file.hasRoutes == hasRoutes)
            names.append(file.name);
    }
    return names;
}

void KeptFiles::write(const QString &folder, const Contents &contents, std::vector<MadeElement> &made,
                      LeftOut &leftOut) const {
    Writer writer(contents, made, leftOut);
    for (const File &file : mFiles) {
        XmlFile xml(folder + QLatin1Char('/') + file.name,
                    file.hasRoutes ? QStringLiteral("routes") : QStringLiteral("additional"));
        file.elements.forEach([&](const KeptEntry &entry) { writer.write(entry, xml); });
        xml.finish();
    }
    writer.finish();
}

} // namespace moratools
