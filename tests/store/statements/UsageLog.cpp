#include "tests/support/StatementList.h"

namespace {

constexpr long kNet = StatementList::kNet;

template <class Tools>
void record(StatementList &list) {
    list.add("logInfo", [] { Tools::logInfo(gDB, kNet, Logger()); });
    list.add("logInfoWithPlugin",
             [] { Tools::logInfoWithPlugin(gDB, kNet, Logger(), "plug-in", "1", "2024-01-01"); });
    list.add("selectLogger", [] {
        QList<Logger> events;
        Tools::selectLogger(gDB, kNet, events, 10);
    });
}

const StatementFamily kUsageLog("Usage log", record<DBTools>, record<DBTools_V6>);

} // namespace
