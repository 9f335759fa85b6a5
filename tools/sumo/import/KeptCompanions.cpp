#include "tools/sumo/import/KeptCompanions.h"

#include "tools/sumo/kept/Digests.h"

#include <QSet>

#include <algorithm>

namespace moratools {

namespace {

/// Takes everything out of an element that has one of these numbers, and moves `number`, which is its own, to that
/// of the last element in it.
void removeFrom(KeptElement &element, qint64 &number, const QSet<qint64> &leftOut) {
    std::vector<KeptElement> children;
    for (KeptElement &child : element.children) {
        const bool stays = !leftOut.contains(++number);
        removeFrom(child, number, leftOut);
        if (stays)
            children.push_back(std::move(child));
    }
    element.children = std::move(children);
}

KeptList settled(const SumoFile &file, const QSet<qint64> &leftOut, const Digests &digests) {
    if (leftOut.isEmpty() && std::none_of(file.kinds.begin(), file.kinds.end(), Digests::isMadeAlone))
        return file.elements;
    KeptList elements;
    std::size_t place = 0;
    file.elements.forEach([&](KeptEntry entry) {
        qint64 number = file.numbers[place++];
        if (leftOut.contains(number))
            return;
        removeFrom(entry.element, number, leftOut);
        entry.of = digests.of(entry.element);
        elements.add(entry);
    });
    return elements;
}

QJsonArray filesOf(const CompanionPlan &plan, const Digests &digests) {
    const SumoCompanions &companions = *plan.companions;
    std::vector<QSet<qint64>> leftOut(companions.kept.size());
    for (const LeftOut::Element &element : plan.leftOut.elements()) {
        if (element.source.file != SumoSource::kNetwork)
            leftOut[std::size_t(element.source.file)].insert(element.source.element);
    }
    QJsonArray files;
    for (std::size_t i = 0; i < companions.kept.size(); ++i) {
        const SumoFile &file = companions.kept[i];
        files.append(QJsonObject{{QStringLiteral("name"), file.name},
                                 {QStringLiteral("role"),
                                  file.hasRoutes ? QStringLiteral("routes") : QStringLiteral("additional")},
                                 {QStringLiteral("elements"), settled(file, leftOut[i], digests).toJson()}});
    }
    return files;
}

QJsonArray programmesOf(const SignalPlan &plan, const NetLists &network, const Digests &digests) {
    KeptList programmes;
    for (std::size_t i = 0; i < plan.groups.size(); ++i)
        programmes.add({plan.groups[i].programme->kept, digests.of(*network.traffic.signalGroups[i])});
    return programmes.toJson();
}

} // namespace

QJsonObject keepCompanions(const CompanionPlan &plan, const NetLists &network) {
    const Digests digests(network);
    QJsonObject kept;
    if (!plan.companions->kept.empty()) {
        kept.insert(QStringLiteral("files"), filesOf(plan, digests));
        kept.insert(QStringLiteral("demand"), digests.demand());
    }
    if (!plan.signalPlan.groups.empty())
        kept.insert(QStringLiteral("programmes"), programmesOf(plan.signalPlan, network, digests));
    QJsonObject options;
    for (const auto &option : plan.scenario.options)
        options.insert(option.first, option.second);
    if (!options.isEmpty())
        kept.insert(QStringLiteral("config"), options);
    return kept;
}

} // namespace moratools
