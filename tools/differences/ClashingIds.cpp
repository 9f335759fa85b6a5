#include "tools/differences/Merge.h"
#include "tools/differences/PatchText.h"
#include "tools/differences/References.h"

#include <algorithm>
#include <map>
#include <set>

namespace moratools {

namespace {

/// What one side added.
struct Additions {
    explicit Additions(const std::vector<RowChange> &changes) {
        for (const RowChange &change : changes) {
            if (change.kind != RowChange::Kind::Added)
                continue;
            const RowId id = idOf(change);
            if (id.first && id.first->uniqueId())
                rows.insert({id, &change});
            const RowId owner = ownerOf(change);
            if (owner.first)
                parts[owner].push_back(&change);
        }
        for (auto &[owner, list] : parts)
            texts[owner] = textsOf(list);
    }

    static std::vector<QByteArray> textsOf(const std::vector<const RowChange *> &changes) {
        std::vector<QByteArray> lines;
        for (const RowChange *change : changes)
            lines.push_back(patchtext::lineOf(*change));
        std::sort(lines.begin(), lines.end());
        return lines;
    }

    std::vector<QByteArray> textsOf(const RowId &owner) const {
        const auto found = texts.find(owner);
        return found == texts.end() ? std::vector<QByteArray>() : found->second;
    }

    std::map<RowId, const RowChange *> rows;
    std::map<RowId, std::vector<const RowChange *>> parts;
    std::map<RowId, std::vector<QByteArray>> texts;
};

class Clashes {
public:
    Clashes(const std::vector<RowChange> &ours, const std::vector<RowChange> &theirs)
        : mOurs(ours), mTheirs(theirs) {
        for (const auto &[id, change] : mTheirs.rows) {
            const auto same = mOurs.rows.find(id);
            if (same == mOurs.rows.end())
                continue;
            mCommon.push_back(id);
            if (patchtext::lineOf(*same->second) != patchtext::lineOf(*change) ||
                mOurs.textsOf(id) != mTheirs.textsOf(id))
                mClashing.insert(id);
        }
        while (spread()) {
        }
    }

    const std::set<RowId> &ids() const { return mClashing; }

private:
    /// To what belongs to a row that clashes, what it belongs to, and what refers to it.
    bool spread() {
        const std::size_t before = mClashing.size();
        for (const RowId &id : mCommon) {
            const RowChange &change = *mTheirs.rows.at(id);
            const auto &references = change.table->references;
            const auto parts = mTheirs.parts.find(id);
            const bool refers = std::any_of(references.begin(), references.end(), [&](const auto &reference) {
                return mClashing.count(referredBy(change, reference, change.after)) > 0;
            });
            const bool consists =
                parts != mTheirs.parts.end() &&
                std::any_of(parts->second.begin(), parts->second.end(),
                            [this](const RowChange *part) { return mClashing.count(idOf(*part)) > 0; });
            if (refers || consists)
                mClashing.insert(id);
        }
        return mClashing.size() > before;
    }

    Additions mOurs;
    Additions mTheirs;
    std::vector<RowId> mCommon;
    std::set<RowId> mClashing;
};

} // namespace

QHash<const catalogue::Table *, std::vector<qint64>> clashingIds(const std::vector<RowChange> &ours,
                                                                 const std::vector<RowChange> &theirs) {
    QHash<const catalogue::Table *, std::vector<qint64>> ids;
    const Clashes clashes(ours, theirs);
    for (const auto &[table, id] : clashes.ids())
        ids[table].push_back(id);
    return ids;
}

} // namespace moratools
