#include "tools/differences/PatchApplication.h"

#include "store/core/Engine.h"
#include "tools/differences/PatchedRows.h"
#include "tools/differences/RowPlaces.h"
#include "tools/reports/Failure.h"
#include "tools/rows/CopyTarget.h"
#include "tools/rows/Digest.h"
#include "tools/rows/FormatSchema.h"
#include "tools/rows/RowsTakenBack.h"
#include "tools/rows/TableCopy.h"
#include "tools/session/GuardedTransaction.h"
#include "tools/session/ServerFailure.h"
#include "tools/session/StoreSession.h"

#include <QSqlError>
#include <QSqlQuery>

#include <algorithm>
#include <utility>

namespace moratools {

namespace {

struct Line {
    int number; ///< 0 of a change in memory
    RowChange change;
};

std::vector<Line> linesOf(const std::vector<RowChange> &changes) {
    std::vector<Line> lines;
    lines.reserve(changes.size());
    for (const RowChange &change : changes)
        lines.push_back({0, change});
    return lines;
}

std::vector<Line> linesOf(PatchReader &patch) {
    std::vector<Line> lines;
    RowChange change;
    while (patch.next(change))
        lines.push_back({patch.line(), change});
    return lines;
}

/// Rows come before those that refer to them, and go after them. In between they change, so that a reference
/// leads somewhere at any time.
std::vector<const Line *> inOrder(const std::vector<Line> &lines) {
    std::vector<const Line *> ordered;
    for (const Line &line : lines)
        ordered.push_back(&line);
    const auto rank = [](const Line *line) {
        static const RowChange::Kind kinds[] = {RowChange::Kind::Added, RowChange::Kind::Changed,
                                                RowChange::Kind::Removed};
        const auto step =
            std::find(std::begin(kinds), std::end(kinds), line->change.kind) - std::begin(kinds);
        const auto table = line->change.table - catalogue::tables().data();
        return std::make_pair(step, line->change.kind == RowChange::Kind::Removed ? -table : table);
    };
    std::stable_sort(ordered.begin(), ordered.end(),
                     [&rank](const Line *one, const Line *other) { return rank(one) < rank(other); });
    return ordered;
}

class PatchApplication {
public:
    /// A header without digests asks for none.
    PatchApplication(const StoreSession &store, long netId, PatchHeader header, Fitting fitting)
        : mStore(store),
          mHeader(std::move(header)),
          mFitting(fitting),
          mTarget(store),
          mRows(store.db(), QStringLiteral("the store"), mTarget.tables(), store.hasSeveralNetworks(), netId),
          mLanguage(mRows.language()),
          mWords(mLanguage, mHeader.words),
          mTaken(mRows, mWords),
          mPatched(mRows, isCheckedAtTheEnd() ? &mTaken : nullptr) {}

    PatchedNetwork run(std::vector<Line> &lines, const Progress &progress);
    void putInPlaces(const std::vector<RowPlace> &places) const { moratools::putInPlaces(mRows, places); }

private:
    /// Whether the digests before and after are taken together, in one pass over the changed network.
    bool isCheckedAtTheEnd() const {
        return mFitting == Fitting::Whole && !mHeader.before.isEmpty() && !mHeader.after.isEmpty();
    }
    void requireFitting();
    void requireDigests(const Progress &progress);
    [[noreturn]] void refuse(const QString &objection);
    void translate(RowChange &change);
    void make(const Line &line);
    QString tried(const RowChange &change);
    void execute(const char *sql) const;
    void note(const RowChange &change);
    void raiseCounters() const;

    const StoreSession &mStore;
    PatchHeader mHeader;
    Fitting mFitting;
    CopyTarget mTarget;
    NetworkRows mRows;
    Language mLanguage;
    Translation mWords; ///< into those of the patch
    RowsTakenBack mTaken;
    PatchedRows mPatched;
    QMap<const catalogue::Table *, qint64> mLargest;
    PatchedNetwork mResult;
};

PatchedNetwork PatchApplication::run(std::vector<Line> &lines, const Progress &progress) {
    reportShare(progress, 0);
    if (isCheckedAtTheEnd())
        execute("savepoint patch");
    else if (mFitting == Fitting::Whole && !mHeader.before.isEmpty())
        requireFitting();
    constexpr double asMuch = 1.0 / 3; // the digests take the rest
    const std::vector<const Line *> ordered = inOrder(lines);
    for (Line &line : lines)
        translate(line.change);
    for (std::size_t i = 0; i < ordered.size(); ++i) {
        make(*ordered[i]);
        reportShare(progress, asMuch * double(i + 1) / double(ordered.size()));
    }
    raiseCounters();
    const auto rest = [&](double share) { reportShare(progress, asMuch + (1 - asMuch) * share); };
    if (isCheckedAtTheEnd())
        requireDigests(rest);
    else if (mFitting == Fitting::Anyway)
        mResult.digest = digestOf(mRows, mWords);
    return mResult;
}

void PatchApplication::requireDigests(const Progress &progress) {
    const TwoDigests digests = digestsOf(mRows, mWords, mTaken, progress);
    mResult.digest = digests.now;
    if (digests.before != mHeader.before || digests.now != mHeader.after)
        refuse(QStringLiteral("the patch does not lead to the network whose digest it has; write it anew. "
                              "Nothing was changed"));
}

/// Says first whether the network is the one that the patch is for.
void PatchApplication::refuse(const QString &objection) {
    if (isCheckedAtTheEnd()) {
        // Where that is refused, too, the engine has ended the transaction: the objection says why.
        QSqlQuery query(mStore.db());
        if (query.exec(QStringLiteral("rollback to savepoint patch")))
            requireFitting();
    }
    throw Failure(objection);
}

void PatchApplication::requireFitting() {
    const QString now = digestOf(mRows, mWords);
    if (now == mHeader.before)
        return;
    throw Failure(
        now == mHeader.after
            ? QStringLiteral("the network has the changes of the patch already; nothing was changed")
            : QStringLiteral("the network is not the one that the patch was made for (its digest is %1 "
                             "and not %2); give that one, or --anyway for what fits. Nothing was changed")
                  .arg(now.left(12), mHeader.before.left(12)));
}

/// Words as the store has them.
void PatchApplication::translate(RowChange &change) {
    Translation words(mHeader.words, mLanguage);
    for (const char *column : change.table->words) {
        const QString name = formatName(QLatin1String(change.table->name), QLatin1String(column));
        for (RowValues *values : {&change.key, &change.before, &change.after}) {
            const auto word = values->find(name);
            if (word != values->end())
                words.apply(*word);
        }
    }
}

void PatchApplication::make(const Line &line) {
    const QString objection = tried(line.change);
    if (objection.isEmpty()) {
        note(line.change);
        ++mResult.changes;
        return;
    }
    mStore.requireServerAlive();
    QString what = QStringLiteral("table %1: %2").arg(QLatin1String(line.change.table->name), objection);
    if (line.number == 0)
        throw Failure(QStringLiteral("the network is not as the step has left it, something else has "
                                     "changed it (%1). Nothing was changed")
                          .arg(what));
    what.prepend(QStringLiteral("line %1, ").arg(line.number));
    if (mFitting == Fitting::Whole)
        refuse(QStringLiteral("the patch does not fit (%1); write it anew. Nothing was changed").arg(what));
    mResult.leftOut.append(what);
}

QString PatchApplication::tried(const RowChange &change) {
    if (mFitting == Fitting::Whole)
        return mPatched.make(change);
    const QString dangling = mPatched.danglingAfter(change);
    if (!dangling.isEmpty())
        return dangling;
    // A server takes nothing more after a statement that it has refused.
    const bool isServer = engine::isPostgreSql(mStore.db());
    if (isServer)
        execute("savepoint change");
    const QString objection = mPatched.make(change);
    if (isServer)
        execute(objection.isEmpty() ? "release savepoint change" : "rollback to savepoint change");
    return objection;
}

void PatchApplication::execute(const char *sql) const {
    QSqlQuery query(mStore.db());
    if (query.exec(QLatin1String(sql)))
        return;
    requireServer(query);
    throw Failure(QStringLiteral("the store cannot be written (%1); nothing was changed")
                      .arg(query.lastError().databaseText().simplified()));
}

void PatchApplication::note(const RowChange &change) {
    const catalogue::Table &table = *change.table;
    // What stores count: identifiers, and codes that are told.
    if (change.kind == RowChange::Kind::Removed || !(table.uniqueId() || (table.id && table.isIdTold)))
        return;
    const QString id = formatName(QLatin1String(table.name), QLatin1String(table.id));
    const QVariant value =
        change.kind == RowChange::Kind::Added ? change.after.value(id) : change.key.value(id);
    mLargest[&table] = std::max(mLargest.value(&table), value.toLongLong());
}

void PatchApplication::raiseCounters() const {
    for (auto largest = mLargest.cbegin(); largest != mLargest.cend(); ++largest) {
        if (largest.value() > 0)
            mTarget.raiseCounters(mRows.netId(), *largest.key(), largest.value());
    }
}

} // namespace

PatchedNetwork applyPatch(const StoreSession &store, long netId, PatchReader &patch, Fitting fitting,
                          const Progress &progress) {
    std::vector<Line> lines = linesOf(patch);
    GuardedTransaction transaction(store);
    const PatchedNetwork result =
        PatchApplication(store, netId, patch.header(), fitting).run(lines, progress);
    transaction.commit();
    store.forgetIdentifiers(netId);
    return result;
}

void applyChanges(const StoreSession &store, long netId, const std::vector<RowChange> &changes,
                  const std::vector<RowPlace> &places) {
    std::vector<Line> lines = linesOf(changes);
    GuardedTransaction transaction(store);
    PatchApplication application(store, netId, {}, Fitting::Whole);
    application.run(lines, {});
    application.putInPlaces(places);
    transaction.commit();
    store.forgetIdentifiers(netId);
}

void applyChanges(const StoreSession &store, long netId, const std::vector<RowChange> &changes,
                  const PatchHeader &header, const Progress &progress) {
    std::vector<Line> lines = linesOf(changes);
    GuardedTransaction transaction(store);
    PatchApplication(store, netId, {header.before, QString(), header.words}, Fitting::Whole)
        .run(lines, progress);
    transaction.commit();
    store.forgetIdentifiers(netId);
}

} // namespace moratools
