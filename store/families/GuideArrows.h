#pragma once

#include "store/core/Store.h"

#include <QHash>
#include <QList>

class NetLoad;
class NetSave;
struct GuideArrow;
class Lane;
struct NetContents;

/// Guide arrows painted on lanes.
namespace guidearrows {

bool insertGuideArrow(const Store &store, GuideArrow *arrow, bool inTransaction);
GuideArrow *readGuideArrow(const Store &store, long id);
/// The arrows whose lane exists.
bool listGuideArrowIds(const Store &store, QList<long> &ids);

/// The lanes of those arrows that name none by id, and that a lane has in its list.
QHash<const GuideArrow *, const Lane *> lanesOfUnnamed(const NetContents &contents);

void loadAllGuideArrows(NetLoad &net);
void saveAllGuideArrows(NetSave &net);

} // namespace guidearrows
