#include "tests/support/Builders.h"
#include "tests/support/StatementList.h"

#include <type_traits>

namespace {

constexpr long kNet = StatementList::kNet;

template <class Tools>
void recordConnectors(StatementList &list, Link *from, Link *to) {
    const auto connector = sampleConnector(5, from, to);
    connector->mlLimitVehicle = {2};
    connector->mlLaneConnector.first()->otherAttrsJson = {{"turn", "left"}};
    list.addWrite("insertConnector",
                  [&](bool flag) { Tools::insertConnector(gDB, kNet, connector.get(), flag); });
    const auto back = sampleConnector(6, to, from);
    QList<Connector *> connectors = {back.get()};
    list.addWrite("insertConnectors",
                  [&](bool flag) { Tools::insertConnectors(gDB, kNet, connectors, flag); });
    list.add("selectConnectorByID",
             [] { std::unique_ptr<Connector>(Tools::selectConnectorByID(gDB, kNet, 5)); });
    list.add("selectConnectorIDs", [] {
        QList<long> ids;
        Tools::selectConnectorIDs(gDB, kNet, ids);
    });
}

template <class Tools>
void recordGuideArrows(StatementList &list) {
    GuideArrow arrow;
    arrow.guideArrowID = 4;
    arrow.laneID = 71;
    list.addWrite("insertGuideArrow", [&](bool flag) { Tools::insertGuideArrow(gDB, kNet, &arrow, flag); });
    list.add("selectGuideArrowByID",
             [] { std::unique_ptr<GuideArrow>(Tools::selectGuideArrowByID(gDB, kNet, 4)); });
    list.add("selectGuideArrowIDs", [] {
        QList<long> ids;
        Tools::selectGuideArrowIDs(gDB, kNet, ids);
    });
}

template <class Tools>
void record(StatementList &list) {
    const auto link = sampleLink(7);
    list.addWrite("insertLink", [&](bool flag) { Tools::insertLink(gDB, kNet, link.get(), flag); });
    const auto second = sampleLink(8);
    second->mlLane.first()->mlLimitVehicle.append({2, "Coach"});
    second->mlLane.first()->otherAttrsJson = {{"note", "kerb"}};
    list.addWrite("insertLink with lane restrictions and attributes",
                  [&](bool flag) { Tools::insertLink(gDB, kNet, second.get(), flag); });
    std::unique_ptr<Link> from;
    list.add("selectLinkByID", [&] { from.reset(), from.reset(Tools::selectLinkByID(gDB, kNet, 7)); });
    list.add("selectLinkByID of a link that gNet holds", [] { Tools::selectLinkByID(gDB, kNet, 7); });
    list.add("selectLinkIDs", [] {
        QList<long> ids;
        Tools::selectLinkIDs(gDB, kNet, ids);
    });
    list.add("selectLinkType", [] {
        QList<LinkType> types;
        Tools::selectLinkType(gDB, kNet, types);
    });
    if constexpr (std::is_same_v<Tools, DBTools>) {
        const auto third = sampleLink(9);
        QList<Link *> links = {third.get()};
        list.addWrite("insertLinks", [&](bool flag) { DBTools::insertLinks(gDB, kNet, links, flag); });
        list.add("checkLinkVertex", [] { DBTools::checkLinkVertex(gDB, 7, 71); });
        list.add("checkNodeVertex", [] { DBTools::checkNodeVertex(gDB, 71, 71); });
    }
    const std::unique_ptr<Link> to(Tools::selectLinkByID(gDB, kNet, 8));
    recordConnectors<Tools>(list, from.get(), to.get());
    recordGuideArrows<Tools>(list);
}

const StatementFamily kRoads("Roads", record<DBTools>, record<DBTools_V6>);

} // namespace
