#include "tools/differences/NetworkDiff.h"

#include "tools/differences/References.h"
#include "tools/rows/CanonicalRows.h"
#include "tools/rows/FormatSchema.h"
#include "tools/rows/TableCopy.h"

#include <algorithm>
#include <iterator>
#include <tuple>

namespace moratools {

namespace {

bool isAmong(const std::vector<const char *> &columns, const QByteArray &name) {
    return std::any_of(columns.begin(), columns.end(),
                       [&name](const char *column) { return qstricmp(column, name.constData()) == 0; });
}

/// The numbers of the links and connectors of both networks, which come before what stands on them. Most often only
/// one of the two has a number, whatever a row says of its road.
class RoadNumbers {
public:
    void add(const catalogue::Table &entry, const QByteArray &place) {
        std::vector<qint64> *ids = qstrcmp(entry.name, "Link") == 0        ? &mLinks
                                   : qstrcmp(entry.name, "Connector") == 0 ? &mConnectors
                                                                           : nullptr;
        if (!ids)
            return;
        const char *at = place.constData();
        ids->push_back(rowvalue::takeCanonical(at).toLongLong());
    }

    const catalogue::Table *roadOf(const catalogue::Reference &reference, qint64 id,
                                   const std::function<QVariant(const char *)> &valueOf) const {
        const bool isLink = std::binary_search(mLinks.begin(), mLinks.end(), id);
        const bool isConnector = std::binary_search(mConnectors.begin(), mConnectors.end(), id);
        if (isLink == isConnector)
            return roadBySign(reference, valueOf);
        return catalogue::find(isLink ? QStringLiteral("Link") : QStringLiteral("Connector"));
    }

private:
    // Ascending, as rows come.
    std::vector<qint64> mLinks;
    std::vector<qint64> mConnectors;
};

/// What differs in one table.
class TableDiff {
public:
    TableDiff(const catalogue::Table &entry, bool hasId, const RoadNumbers &roads,
              const std::function<void(const RowChange &)> &use)
        : mEntry(entry), mRoads(roads), mUse(use), mIdentity(identityColumns(entry, hasId)) {
        const auto isNoIdentity = [this](const char *column) { return !isAmong(mIdentity, column); };
        mLeading = std::find_if(entry.key.begin(), entry.key.end(), isNoIdentity) - entry.key.begin();
    }

    /// Rows of both with the key that `place` stands for; each ascending.
    void add(const QByteArray &place, const std::vector<QByteArray> &before,
             const std::vector<QByteArray> &after) {
        if (before == after)
            return;
        const QByteArray leading = leadingOf(place);
        if (leading != mPlace)
            finish();
        mPlace = leading;
        std::set_difference(before.begin(), before.end(), after.begin(), after.end(),
                            std::back_inserter(mBefore));
        std::set_difference(after.begin(), after.end(), before.begin(), before.end(),
                            std::back_inserter(mAfter));
    }

    /// What is left over is the same row where it is the only one of its identity on both sides.
    void finish() {
        std::vector<Row> rows;
        for (const QByteArray &row : mBefore)
            rows.push_back(rowOf(row, true));
        for (const QByteArray &row : mAfter)
            rows.push_back(rowOf(row, false));
        std::sort(rows.begin(), rows.end(), [](const Row &one, const Row &other) {
            return std::tie(one.identity, one.content) < std::tie(other.identity, other.content);
        });
        for (auto row = rows.cbegin(); row != rows.cend();) {
            const auto end = std::find_if(
                row, rows.cend(), [row](const Row &other) { return other.identity != row->identity; });
            if (end - row == 2 && row->isBefore != (row + 1)->isBefore)
                tellChange(row->isBefore ? *row : *(row + 1), row->isBefore ? *(row + 1) : *row);
            else
                std::for_each(row, end, [this](const Row &one) { tellRow(one); });
            row = end;
        }
        mBefore.clear();
        mAfter.clear();
    }

private:
    struct Row {
        QByteArray identity;
        QByteArray content;
        QVector<QPair<QByteArray, QVariant>> columns;
        bool isBefore;
    };

    QByteArray leadingOf(const QByteArray &place) const {
        if (mLeading == std::ptrdiff_t(mEntry.key.size()))
            return place;
        return place.left(CanonicalRows::sizeOf(place, int(mLeading)));
    }

    Row rowOf(const QByteArray &content, bool isBefore) const {
        Row row{{}, content, CanonicalRows::columnsOf(content), isBefore};
        for (const auto &[name, value] : qAsConst(row.columns)) {
            if (!isAmong(mIdentity, name))
                continue;
            row.identity.append(name);
            rowvalue::appendCanonical(row.identity, value);
        }
        return row;
    }

    void tellRow(const Row &row) const {
        RowChange change = changeOf(row);
        change.kind = row.isBefore ? RowChange::Kind::Removed : RowChange::Kind::Added;
        RowValues &values = row.isBefore ? change.before : change.after;
        for (const auto &[name, value] : row.columns)
            values.insert(spelled(name), value);
        noteRoads(change, row);
        mUse(change);
    }

    void noteRoads(RowChange &change, const Row &row) const {
        const auto valueOf = [&row](const char *column) {
            const auto found =
                std::find_if(row.columns.begin(), row.columns.end(),
                             [column](const auto &value) { return qstricmp(value.first, column) == 0; });
            return found == row.columns.end() ? QVariant() : found->second;
        };
        for (const catalogue::Reference &reference : mEntry.references) {
            const QVariant id = reference.table ? QVariant() : valueOf(reference.column);
            if (id.userType() == QMetaType::LongLong)
                change.roads.insert(id.toLongLong(), mRoads.roadOf(reference, id.toLongLong(), valueOf));
        }
    }

    void tellChange(const Row &before, const Row &after) const {
        RowChange change = changeOf(after);
        for (const auto &[name, value] : before.columns)
            change.before.insert(spelled(name), value);
        for (const auto &[name, value] : after.columns)
            change.after.insert(spelled(name), value);
        for (const auto &[name, value] : before.columns) {
            const QString column = spelled(name);
            const QVariant now = change.after.value(column);
            if (rowvalue::areSame(now, value)) {
                change.before.remove(column);
                change.after.remove(column);
            } else if (!now.isValid()) {
                change.after.insert(column, QVariant());
            }
        }
        for (auto column = change.after.cbegin(); column != change.after.cend(); ++column) {
            if (!change.before.contains(column.key()))
                change.before.insert(column.key(), QVariant());
        }
        noteRoads(change, before);
        noteRoads(change, after);
        mUse(change);
    }

    /// With what tells people whose row it is.
    RowChange changeOf(const Row &row) const {
        RowChange change;
        change.table = &mEntry;
        const catalogue::Reference *owner = mEntry.owner();
        const catalogue::Kind *kind = catalogue::kindIn(QLatin1String(mEntry.name));
        for (const auto &[name, value] : row.columns) {
            if (isAmong(mIdentity, name))
                change.key.insert(spelled(name), value);
            if (owner && qstricmp(owner->column, name.constData()) == 0)
                change.owner = value;
            if (kind && qstricmp(kind->name, name.constData()) == 0)
                change.name = value.toString();
        }
        return change;
    }

    QString spelled(const QByteArray &name) const {
        return formatName(QLatin1String(mEntry.name), QString::fromUtf8(name));
    }

    const catalogue::Table &mEntry;
    const RoadNumbers &mRoads;
    const std::function<void(const RowChange &)> &mUse;
    std::vector<const char *> mIdentity;
    /// How many columns of the key lead it and belong to the identity: rows that they tell apart are not the
    /// same.
    std::ptrdiff_t mLeading;
    QByteArray mPlace;
    std::vector<QByteArray> mBefore;
    std::vector<QByteArray> mAfter;
};

class NetworkDiff {
public:
    NetworkDiff(const NetworkRows &one, const NetworkRows &other, Translation &words, Roads roads,
                const std::function<void(const RowChange &)> &use)
        : mOne(one), mOther(other), mWords(words), mRoads(roads), mUse(use) {}

    void compare(const catalogue::Table &entry) {
        const bool hasId = entry.id && hasColumn(mOne, entry) && hasColumn(mOther, entry);
        TableDiff diff(entry, hasId, mNumbers, mUse);
        CanonicalRows before(mOne, entry, Covered::AllOfIt);
        CanonicalRows after(mOther, entry, Covered::AllOfIt, &mWords);
        bool hasBefore = before.next();
        bool hasAfter = after.next();
        while (hasBefore || hasAfter) {
            const int order = !hasBefore  ? 1
                              : !hasAfter ? -1
                                          : CanonicalRows::compare(before.place(), after.place());
            static const std::vector<QByteArray> none;
            if (mRoads == Roads::LookedUp)
                mNumbers.add(entry, order <= 0 ? before.place() : after.place());
            diff.add(order <= 0 ? before.place() : after.place(), order <= 0 ? before.group() : none,
                     order >= 0 ? after.group() : none);
            if (order <= 0) {
                mBefore.add(entry, before.group());
                hasBefore = before.next();
            }
            if (order >= 0) {
                mAfter.add(entry, after.group());
                hasAfter = after.next();
            }
        }
        diff.finish();
    }

    QString before() { return mBefore.result(); }
    QString after() { return mAfter.result(); }

private:
    static bool hasColumn(const NetworkRows &rows, const catalogue::Table &entry) {
        const StoreTable *table = rows.table(QLatin1String(entry.name));
        return !table || table->column(QLatin1String(entry.id));
    }

    NetworkRows mOne;
    NetworkRows mOther;
    Translation &mWords;
    Roads mRoads;
    const std::function<void(const RowChange &)> &mUse;
    RoadNumbers mNumbers; ///< with Roads::LookedUp
    NetworkDigest mBefore;
    NetworkDigest mAfter;
};

} // namespace

ComparedNetworks diffNetworks(const StoreReader &one, const NamedNetwork &first, const StoreReader &other,
                              const NamedNetwork &second, const std::function<void(const RowChange &)> &use,
                              const Progress &progress, Roads roads) {
    ComparedNetworks compared;
    compared.words = one.language(first);
    Translation words(other.language(second), compared.words);
    NetworkDiff diff(one.rowsOf(first), other.rowsOf(second), words, roads, use);
    const std::vector<catalogue::Table> &tables = catalogue::tables();
    for (std::size_t i = 0; i < tables.size(); ++i) {
        reportShare(progress, double(i) / double(tables.size()));
        diff.compare(tables[i]);
    }
    compared.before = diff.before();
    compared.after = diff.after();
    return compared;
}

void diffRows(const NetworkRows &before, const NetworkRows &after,
              const std::function<void(const RowChange &)> &use) {
    Translation words(Language::Unknown, Language::Unknown);
    NetworkDiff diff(before, after, words, Roads::AsSaid, use);
    for (const catalogue::Table &entry : catalogue::tables())
        diff.compare(entry);
}

} // namespace moratools
