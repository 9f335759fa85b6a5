#include "store/core/ConnectionName.h"

#include <atomic>

QString newConnectionName(const char *purpose) {
    static std::atomic<int> count{0};
    return QStringLiteral("morastore-%1-%2").arg(QLatin1String(purpose), QString::number(++count));
}
