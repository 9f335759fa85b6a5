#include "host/commands/StoreText.h"

#include "host/Printable.h"

using namespace moratools;

namespace commands {

QString textOf(const StoreInfo &info) {
    QString text = QStringLiteral("store       %1\ngeneration  %2\nlanguage    %3\nnetworks    %4\n")
                       .arg(printable::line(info.path), QString::number(info.generation),
                            info.isEnglish ? QStringLiteral("English") : QStringLiteral("Chinese"),
                            QString::number(info.networkCount));
    for (const NetworkInfo &network : info.networks) {
        text += QStringLiteral("\nnetwork %1: %2%3\n")
                    .arg(QString::number(network.id), printable::line(network.name),
                         network.isDefault ? QStringLiteral(" (default)") : QString());
        if (!network.sourceUrl.isEmpty())
            text += QStringLiteral("  %1 %2\n")
                        .arg(QStringLiteral("source").leftJustified(22), printable::line(network.sourceUrl));
        for (const auto &kind : network.rows) {
            if (kind.second > 0)
                text += QStringLiteral("  %1 %2\n")
                            .arg(kind.first.leftJustified(22), QString::number(kind.second));
        }
        text += QStringLiteral("  %1 %2 km\n")
                    .arg(QStringLiteral("length of links").leftJustified(22),
                         QString::number(network.linkLength / 1000, 'f', 3));
        if (network.hasExtent)
            text +=
                QStringLiteral("  %1 x %2 to %3, y %4 to %5, z %6 to %7 m\n")
                    .arg(QStringLiteral("extent").leftJustified(22), QString::number(network.low[0], 'f', 2),
                         QString::number(network.high[0], 'f', 2), QString::number(network.low[1], 'f', 2),
                         QString::number(network.high[1], 'f', 2), QString::number(network.low[2], 'f', 2),
                         QString::number(network.high[2], 'f', 2));
    }
    return text;
}

QString textOf(const StoreUpgrade &upgrade, const QString &path) {
    if (upgrade.wasCurrent)
        return QStringLiteral("%1: nothing to do, the store is current\n").arg(path);
    QString text = QStringLiteral("%1: the store is current now\n").arg(path);
    const auto line = [&text](const char *what, const QString &value) {
        if (!value.isEmpty())
            text += QStringLiteral("  %1 %2\n").arg(QString(QLatin1String(what)).leftJustified(22), value);
    };
    const QString comma = QStringLiteral(", ");
    line("as it was before", upgrade.copy);
    line("tables added", upgrade.tables.join(comma));
    line("columns added", upgrade.columns.join(comma));
    line("columns respelled", upgrade.respelled.join(comma));
    if (upgrade.hasNewCounters)
        line("identifiers", QStringLiteral("one counter became one for each table"));
    return text;
}

} // namespace commands
