#include "tools/differences/SourceUpdate.h"

#include "tools/differences/AlignedNetwork.h"
#include "tools/reports/Failure.h"
#include "tools/session/StoreSession.h"

#include <QSqlError>
#include <QSqlQuery>

namespace moratools {

namespace {

/// What an import says of itself and no source does.
struct Provenance {
    QVariant name;
    QVariant source;
    QVariant date;
};

Provenance provenanceOf(const StoreReader &store, const NamedNetwork &network) {
    Provenance result;
    const auto read = [&](const char *name, const char *column) {
        QVariant value;
        const StoreTable *table = store.table(QLatin1String(name));
        const StoreColumn *wanted = table ? table->column(QLatin1String(column)) : nullptr;
        if (wanted)
            store.read(
                *table, *catalogue::find(QLatin1String(name)), network, StoreReader::Order::Canonical,
                [&](const StoreReader::Row &row) { value = row[int(wanted - table->columns.constData())]; });
        return value;
    };
    result.name = read("Net", "name");
    result.source = read("Net", "sourceUrl");
    result.date = read("Configuration", "saveDate");
    return result;
}

void run(QSqlQuery &query) {
    if (!query.exec())
        throw Failure(
            QStringLiteral("an import cannot be written to (%1)").arg(query.lastError().databaseText()));
}

/// That these differ is no edit.
void settle(const NetworkVersion &import, const Provenance &provenance, bool withSource) {
    const StoreSession store(import.store, Access::Write);
    QSqlQuery record(store.db());
    record.prepare(withSource ? QStringLiteral("update Net set name = :name, sourceUrl = :source")
                              : QStringLiteral("update Net set name = :name"));
    record.bindValue(QStringLiteral(":name"), provenance.name);
    if (withSource)
        record.bindValue(QStringLiteral(":source"), provenance.source);
    run(record);
    QSqlQuery date(store.db());
    date.prepare(QStringLiteral("update Configuration set saveDate = :date"));
    date.bindValue(QStringLiteral(":date"), provenance.date);
    run(date);
}

} // namespace

QString sourceOf(const StoreReader &store, const NamedNetwork &network) {
    return provenanceOf(store, network).source.toString();
}

SourceUpdate compareWithSource(const NetworkVersion &ours, const NetworkVersion &base,
                               const NetworkVersion &next, const Progress &progress) {
    const StoreReader our(ours.store);
    if (!our.hasSeveralNetworks())
        throw Failure(
            QStringLiteral("%1: a store of one network keeps too few numbers to be brought to a new source; "
                           "copy the network into a store made by \"morastore new\" first")
                .arg(our.name()));
    const NamedNetwork network = our.networkOf(ours.network);
    const Provenance provenance = provenanceOf(our, network);
    settle(base, provenance, true);
    settle(next, provenance, false);
    StoreReader first(base.store);
    const AlignedNetwork alignedBase(our, network, first, first.networkOf(base.network));
    StoreReader second(next.store);
    const AlignedNetwork alignedNext(alignedBase.store(), alignedBase.network(), second,
                                     second.networkOf(next.network));
    SourceUpdate update;
    update.remarks = alignedBase.alignment().remarks() + alignedNext.alignment().remarks();
    update.edits = compareVersions({alignedBase.address(), {}}, ours, {alignedNext.address(), {}}, progress);
    return update;
}

} // namespace moratools
