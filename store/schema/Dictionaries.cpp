#include "store/schema/Dictionaries.h"

#include "store/core/Query.h"
#include "store/core/Transaction.h"

namespace dictionaries {

namespace {

constexpr Sql kLinkTypes[] = {
    {"insert into LinkType values(1, 'TrunkRoad', 1600, 60, 80, 40, 60)",
     "insert into LinkType values(%1, 1, 'TrunkRoad', 1600, 60, 80, 40, 60)"},
    {"insert into LinkType values(2, 'SecondaryRoad', 1200, 40, 60, 20, 40)",
     "insert into LinkType values(%1, 2, 'SecondaryRoad', 1200, 40, 60, 20, 40)"},
    {"insert into LinkType values(3, 'LocalStreet', 900, 30, 40, 10, 30)",
     "insert into LinkType values(%1, 3, 'LocalStreet', 900, 30, 40, 10, 30)"},
    {"insert into LinkType values(4, 'Highway', 2200, 100, 120, 60, 100)",
     "insert into LinkType values(%1, 4, 'Highway', 2200, 100, 120, 60, 100)"},
    {"insert into LinkType values(5, 'Expressway', 1600, 60, 80, 40, 60)",
     "insert into LinkType values(%1, 5, 'Expressway', 1600, 60, 80, 40, 60)"},
    {"insert into LinkType values(6, 'Ramp', 0, 30, 40, 20, null)",
     "insert into LinkType values(%1, 6, 'Ramp', 0, 30, 40, 20, null)"},
    {"insert into LinkType values(7, 'BusLane', 0, 40, 60, 20, null)",
     "insert into LinkType values(%1, 7, 'BusLane', 0, 40, 60, 20, null)"},
    {"insert into LinkType values(8, 'NonMotorizedLane', 0, 20, 30, 5, null)",
     "insert into LinkType values(%1, 8, 'NonMotorizedLane', 0, 20, 30, 5, null)"},
    {"insert into LinkType values(9, 'MixedLane', 0, 20, 30, 5, null)",
     "insert into LinkType values(%1, 9, 'MixedLane', 0, 20, 30, 5, null)"},
    {"insert into LinkType values(10, 'PedestrianCrossing', 0, 5, 8, 1, null)",
     "insert into LinkType values(%1, 10, 'PedestrianCrossing', 0, 5, 8, 1, null)"},
};

/// The placeholder row of a network, shaped to the columns that the store has.
const char *templateNet(const Store &store) {
    if (!store.hasColumn("Net", "centerX"))
        return "insert into Net values(%1, 'Template', null, 'MoraSim', null, null)";
    const bool hasCaption = store.hasColumn("Net", "caption");
    if (!store.hasColumn("Net", "isDefault")) {
        return hasCaption ? "insert into Net values(%1, 'Template', null, 'MoraSim', null, 0, 0, null, null)"
                          : "insert into Net values(%1, 'Template', null, 'MoraSim', null, 0, 0, null)";
    }
    return hasCaption ? "insert into Net values(%1, 'Template', null, 'MoraSim', null, 0, 0, null, null, 'F')"
                      : "insert into Net values(%1, 'Template', null, 'MoraSim', null, 0, 0, null, 'F')";
}

/// A network without a row does not get one here: only a count that could not be taken at all leads to the
/// insert. Hosts write their networks themselves and count on it.
bool seedNet(const Store &store) {
    if (Query(store, "select count(*) from Net where NetId = %1", {store.netId()}).execAndNext())
        return true;
    return Query(store, templateNet(store), {store.netId()}).exec();
}

bool isEmpty(const Store &store, const Sql &count) {
    Query rows(store, count);
    return rows.execAndNext() && rows.firstId() == 0;
}

bool seedLinkTypes(const Store &store) {
    if (!isEmpty(store, {"select count(*) from LinkType", "select count(*) from LinkType where NetId = %0"}))
        return true;
    bool written = true;
    for (const Sql &type : kLinkTypes)
        written = Query(store, type).exec() && written;
    return written;
}

} // namespace

bool seed(const Store &store, bool useTransaction) {
    Transaction transaction(store, useTransaction);
    bool written = seedNet(store);
    written = seedLinkTypes(store) && written;
    return transaction.commit(written);
}

} // namespace dictionaries
