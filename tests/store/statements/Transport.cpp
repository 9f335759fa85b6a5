#include "model/BusLine.h"
#include "model/BusStation.h"
#include "tests/support/Builders.h"
#include "tests/support/StatementList.h"

namespace {

constexpr long kNet = StatementList::kNet;

template <class Tools>
void record(StatementList &list) {
    const auto written = sampleLink(7);
    Tools::insertLink(gDB, kNet, written.get(), false);
    const std::unique_ptr<Link> link(Tools::selectLinkByID(gDB, kNet, 7));

    BusStation station(link.get());
    station.busStationID = 3;
    const auto insert = [&](bool flag) { Tools::insertBusStation(gDB, kNet, &station, flag); };
    list.addWrite("insertBusStation", insert);
    insert(false);
    list.add("selectBusStation", [] { std::unique_ptr<BusStation>(Tools::selectBusStation(gDB, kNet, 3)); });
    list.add("selectBusStationIds", [] {
        QList<long> ids;
        Tools::selectBusStationIds(gDB, kNet, ids);
    });

    BusLine line;
    line.busLineID = 4;
    line.mlLink = {link.get()};
    auto *stop = new BusStationLine;
    stop->stationLineID = 51;
    stop->busStationID = 3;
    stop->busLineID = 4;
    stop->mlPassengerArriving.append(new PassengerArriving(511, 1, 300, 15));
    line.mlStationLine.append(stop);
    list.addWrite("insertBusLine", [&](bool flag) { Tools::insertBusLine(gDB, kNet, &line, flag); });
    list.add("selectBusLine", [] { std::unique_ptr<BusLine>(Tools::selectBusLine(gDB, kNet, 4)); });
    list.add("selectBusLineIds", [] {
        QList<long> ids;
        Tools::selectBusLineIds(gDB, kNet, ids);
    });
}

const StatementFamily kTransport("Transport", record<DBTools>, record<DBTools_V6>);

} // namespace
