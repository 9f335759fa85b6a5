#include "tools/sumo/export/SumoExport.h"

#include "tools/kinds/NetworkObjects.h"
#include "tools/reports/Failure.h"
#include "tools/reports/OutputFile.h"
#include "tools/session/StoreSession.h"
#include "tools/sumo/export/BuiltNet.h"
#include "tools/sumo/export/ExactNetWriter.h"
#include "tools/sumo/export/FolderInMaking.h"
#include "tools/sumo/export/KeptFiles.h"
#include "tools/sumo/export/Netconvert.h"
#include "tools/sumo/export/PlainNet.h"
#include "tools/sumo/export/XmlFile.h"
#include "tools/sumo/reader/NetReader.h"

#include <QDir>
#include <QFile>
#include <QHash>
#include <QJsonDocument>

#include <iterator>

namespace moratools {

namespace {

/// The network's name as files may be called anywhere.
QString fileNameOf(const QString &network) {
    constexpr int longest = 80;
    QString name = Names::usable(network).left(longest);
    name.replace(QLatin1Char('/'), QLatin1Char('_')).replace(QLatin1Char(':'), QLatin1Char('_'));
    while (name.startsWith(QLatin1Char('.')))
        name.remove(0, 1);
    return name.isEmpty() ? QStringLiteral("network") : name;
}

/// The first of the names.
QString listOf(const QStringList &names) {
    constexpr int most = 10;
    QString list = names.mid(0, most).join(QStringLiteral(", "));
    if (names.size() > most)
        list += QStringLiteral(" and %1 more").arg(names.size() - most);
    return list;
}

class Exporter {
public:
    Exporter(const NetworkObjects &network, const QString &folder, const ExportOptions &options)
        : mFolder(folder),
          mName(fileNameOf(network.record.name)),
          mOptions(options),
          mRoads(network, mNames, mLeftOut),
          mDigests(network),
          mFiles(options.plainOnly ? QJsonObject() : mRoads.kept(), ownFiles()),
          mSignals(mRoads, mDigests, mFiles.programmes(), mNames, mLeftOut) {}

    SumoExport run(const Progress &progress);

private:
    QString path(const QString &name) const { return mFolder + QLatin1Char('/') + name; }
    QString own(const char *ending) const { return mName + QLatin1String(ending); }
    QString plainPrefix() const { return path(QStringLiteral("plain/")) + mName; }
    void makeNetwork(PlainNet &plain, const Progress &progress);
    /// Writes the network file with the insides of junctions as they were kept, and those of `made` for others.
    void writeKeptNetwork(const ExactNetWriter &writer, const SumoNet *made);
    QSet<QString> ownFiles() const;
    /// The network file by netconvert.
    void buildNetwork(PlainNet &plain, const Progress &progress);
    /// Demand, additional objects and the configuration that names them.
    void writeScenario();
    /// Writes what is not empty into a file that no kept one has the name of, and enters it into the list.
    void writeOwn(const char *ending, const char *root, const std::vector<KeptElement> &elements,
                  QStringList &files);
    void writeConfiguration(const QStringList &additional, const QStringList &routes, bool madeAnew);

    QString mFolder;
    QString mName;
    ExportOptions mOptions;
    Names mNames;
    LeftOut mLeftOut;
    ExportedRoads mRoads;
    Digests mDigests;
    KeptFiles mFiles;
    ExportedSignals mSignals;
    SumoExport mResult;
};

QSet<QString> Exporter::ownFiles() const {
    QSet<QString> names{QStringLiteral("plain"), QStringLiteral("names.json")};
    for (const char *ending : {".net.xml", ".made.xml", ".sumocfg"})
        names.insert(own(ending).toLower());
    return names;
}

SumoExport Exporter::run(const Progress &progress) {
    if (mRoads.links().empty())
        throw Failure(QStringLiteral("network \"%1\" has no roads; there is nothing to export")
                          .arg(mRoads.network().record.name));
    mResult.network = mRoads.network().record.name;
    QDir(mFolder).mkdir(QStringLiteral("plain"));
    PlainNet plain = plainNet(mRoads, mSignals, mLeftOut);
    writePlainNet(plain, plainPrefix());
    reportShare(progress, 0.2);
    if (!mOptions.plainOnly) {
        makeNetwork(plain, progress);
        writeScenario();
    }
    writeOutputFile(path(QStringLiteral("names.json")), QJsonDocument(mNames.toJson()).toJson());
    mResult.leftOut = mLeftOut.lines();
    mResult.leftOutCount = mLeftOut.isEmpty() ? QString() : mLeftOut.summary();
    mResult.isWhole = mLeftOut.isEmpty() && (mOptions.plainOnly || !mResult.networkFile.isEmpty());
    reportShare(progress, 1);
    return mResult;
}

void Exporter::makeNetwork(PlainNet &plain, const Progress &progress) {
    const ExactNetWriter writer(mRoads);
    if (mOptions.rebuild || !writer.isPossible()) {
        buildNetwork(plain, progress);
    } else if (writer.edited().isEmpty()) {
        writeKeptNetwork(writer, nullptr);
    } else {
        buildNetwork(plain, progress);
        if (mResult.networkFile.isEmpty())
            return;
        const SumoNet made = readSumoNet(path(mResult.networkFile));
        writeKeptNetwork(writer, &made);
        mResult.note = QStringLiteral("netconvert made the insides of junctions whose links were edited: %1")
                           .arg(listOf(writer.edited()));
    }
}

void Exporter::writeKeptNetwork(const ExactNetWriter &writer, const SumoNet *made) {
    const QString network = mName + QStringLiteral(".net.xml");
    XmlFile file(path(network), QStringLiteral("net"));
    writer.write(file, mSignals.programmes(), made);
    file.finish();
    mResult.networkFile = network;
}

void Exporter::writeScenario() {
    const QString keptDemand = mRoads.kept().value(QStringLiteral("demand")).toString();
    const bool asKept = !mOptions.flows && mFiles.hasDemand() && keptDemand == mDigests.demand();
    for (const QString &id : mFiles.routeIds())
        mNames.unused(QStringLiteral("routes"), id);
    ExportedVehicles vehicles(mRoads.network(), mFiles.vehicleClasses(), mNames);
    const ExportedDevices devices(mRoads, vehicles, mNames, mLeftOut, mName + QLatin1Char('.'));
    std::vector<KeptElement> demand;
    if (!asKept) {
        const ExportedDemand::Manner usual{{QStringLiteral("departLane"), QStringLiteral("best")},
                                           {QStringLiteral("departSpeed"), QStringLiteral("max")}};
        demand = ExportedDemand(mRoads, vehicles, mNames, mLeftOut,
                                mFiles.hasVehicles() ? mFiles.manner() : usual, mFiles.busType())
                     .elements();
    }
    std::vector<MadeElement> made = vehicles.elements();
    made.insert(made.end(), devices.elements().begin(), devices.elements().end());
    mFiles.write(mFolder, {mRoads, mSignals, mDigests, asKept}, made, mLeftOut);

    std::vector<KeptElement> types;
    std::vector<KeptElement> others;
    for (const MadeElement &each : made) {
        // Types that SUMO has of itself.
        if (each.object.startsWith(QLatin1String("DEFAULT_")))
            continue;
        const bool isType = each.element.name.startsWith(QLatin1String("vType"));
        (isType ? types : others).push_back(each.element);
        if (!each.lost.isEmpty())
            mLeftOut.add(QStringLiteral("figures of vehicle types"), each.lost);
    }
    QStringList additional = mFiles.additional();
    QStringList routes = mFiles.routes();
    writeOwn(".add.xml", "additional", others, additional);
    types.insert(types.end(), std::make_move_iterator(demand.begin()), std::make_move_iterator(demand.end()));
    writeOwn(".rou.xml", "routes", types, routes);
    writeConfiguration(additional, routes, !asKept);
}

void Exporter::writeOwn(const char *ending, const char *root, const std::vector<KeptElement> &elements,
                        QStringList &files) {
    if (elements.empty())
        return;
    QString name = own(ending);
    for (int number = 2; QFile::exists(path(name)); ++number)
        name = QStringLiteral("%1-%2%3").arg(mName, QString::number(number), QLatin1String(ending));
    XmlFile file(path(name), QLatin1String(root));
    file.write(elements);
    file.finish();
    files.append(name);
}

void Exporter::writeConfiguration(const QStringList &additional, const QStringList &routes, bool madeAnew) {
    const auto option = [](const QString &name, const QString &value) {
        return KeptElement{name, {{QStringLiteral("value"), value}}, {}};
    };
    KeptElement input{QStringLiteral("input"), {}, {}};
    input.children.push_back(option(QStringLiteral("net-file"), own(".net.xml")));
    if (!routes.isEmpty())
        input.children.push_back(option(QStringLiteral("route-files"), routes.join(QLatin1Char(','))));
    if (!additional.isEmpty())
        input.children.push_back(
            option(QStringLiteral("additional-files"), additional.join(QLatin1Char(','))));
    XmlFile file(path(own(".sumocfg")), QStringLiteral("configuration"));
    file.write(input);
    const QJsonObject kept = mRoads.kept().value(QStringLiteral("config")).toObject();
    for (auto each = kept.begin(); each != kept.end(); ++each)
        file.write(option(each.key(), each.value().toString()));
    const auto &simulation = mRoads.network().settings.simulation;
    if (!kept.contains(QStringLiteral("end")) && kept.isEmpty() && simulation &&
        simulation->simuTimeInterval > 0)
        file.write(option(QStringLiteral("end"), QString::number(simulation->simuTimeInterval)));
    // Who has no way, since a mix of vehicles goes where not all of them may, does not end the run.
    if (madeAnew && !kept.contains(QStringLiteral("ignore-route-errors")))
        file.write(option(QStringLiteral("ignore-route-errors"), QStringLiteral("true")));
    file.finish();
}

void Exporter::buildNetwork(PlainNet &plain, const Progress &progress) {
    const QString program = netconvert::program();
    if (program.isEmpty()) {
        mResult.note =
            QStringLiteral("there is no network file, since SUMO's program netconvert is not installed; with "
                           "it, export again");
        return;
    }
    const QString made = path(mName + QStringLiteral(".made.xml"));
    const QStringList options = netconvert::optionsFor(mRoads.kept().value(QStringLiteral("net")).toObject());
    QString problem = netconvert::build(program, plainPrefix(), made, options);
    reportShare(progress, 0.5);
    if (problem.isEmpty()) {
        // Lanes are cut off at junctions, so only the network tells whose lengths are not those of the store.
        const std::vector<const Link *> differing = builtnet::ofOtherLength(made, mRoads);
        QHash<const Link *, std::size_t> place;
        for (std::size_t i = 0; i < mRoads.links().size(); ++i)
            place.insert(mRoads.links()[i], i);
        for (const Link *link : differing)
            setLength(plain.edges[place.value(link)], *link);
        if (!differing.empty()) {
            writePlainNet(plain, plainPrefix());
            problem = netconvert::build(program, plainPrefix(), made, options);
        }
    }
    if (!problem.isEmpty()) {
        mResult.note =
            QStringLiteral("there is no network file, since netconvert makes none of the files in the folder "
                           "\"plain\" (%1); correct what it names and run it on them")
                .arg(problem);
        QFile::remove(made);
        return;
    }
    const QString network = mName + QStringLiteral(".net.xml");
    builtnet::putRight(made, path(network), mRoads, mSignals);
    QFile::remove(made);
    mResult.networkFile = network;
}

} // namespace

SumoExport exportNetwork(const StoreSession &store, long netId, const QString &folder,
                         const ExportOptions &options, const Progress &progress) {
    FolderInMaking made(folder);
    const NetworkObjects network =
        readNetwork(store, netId, [&progress](double share) { reportShare(progress, share * 0.1); });
    SumoExport result = Exporter(network, made.path(), options).run(progress);
    made.publish();
    if (!result.networkFile.isEmpty())
        result.networkFile = QDir(folder).filePath(result.networkFile);
    return result;
}

} // namespace moratools
