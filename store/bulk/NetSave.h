#pragma once

#include "model/NetContents.h"
#include "store/bulk/RowWriter.h"

#include <functional>
#include <utility>
#include <vector>

/// What the families share while a network is saved as a whole.
class NetSave {
public:
    /// @param recorder takes the rows instead of the store, which gives identifiers alone; null for none.
    NetSave(const Store &into, NetContents &from, const NetProgress &progress,
            RowRecorder *recorder = nullptr)
        : store(into), contents(from), mMeter(progress), mRecorder(recorder) {}
    /// Undoes what the save has changed in memory, unless it was kept.
    ~NetSave();
    NetSave(const NetSave &) = delete;
    NetSave &operator=(const NetSave &) = delete;

    /// Changes a member of the contents, or of what they own, as the rows have it. Whatever the save changes
    /// in memory goes through here or through onUndo().
    template <class T>
    void set(T &member, const T &value) {
        onUndo([&member, before = member] { member = before; });
        member = value;
    }
    /// The same for a member that has no value of its own yet.
    template <class T>
    void setIfUnset(T &member, const T &value) {
        if (member == T())
            set(member, value);
    }
    /// @p undo runs unless the save is kept, the last one first. It may own what was taken out of the
    /// contents.
    void onUndo(std::function<void()> undo) { mUndo.push_back(std::move(undo)); }

    /// Gives identifiers of @p table to those of @p ids that are 0, and keeps the others.
    void giveIds(const char *table, const std::vector<long *> &ids);
    /// The same for a member of every object of a list.
    template <class List, class Entity>
    void giveIds(const char *table, const List &objects, long Entity::*id) {
        std::vector<long *> ids;
        ids.reserve(std::size_t(objects.size()));
        for (const auto &object : objects)
            ids.push_back(&((*object).*id));
        giveIds(table, ids);
    }
    /// The same for the objects of a list @p owned that every object of a list has.
    template <class List, class Owner, class Owned, class Entity>
    void giveIds(const char *table, const List &owners, Owned Owner::*owned, long Entity::*id) {
        std::vector<long *> ids;
        for (const auto &owner : owners) {
            for (auto &object : (*owner).*owned)
                ids.push_back(&(object->*id));
        }
        giveIds(table, ids);
    }

    /// Keeps identifiers that the network brings along from being given out later.
    void keepIds(const char *table, const std::vector<long> &ids);

    /// Whether the rows go elsewhere: what the store has of the objects is not to be touched.
    bool isRecorded() const { return mRecorder; }

    /// Whether rows of @p table are to be made.
    bool wants(const char *table) const { return !mRecorder || mRecorder->wants(table); }

    /// Deletes the rows that the network has of @p table.
    void empty(const char *table);

    /// Writes the rows that @p rows makes with a writer for @p table.
    /// @param total how many.
    template <class Rows>
    void write(const char *table, qint64 total, const Rows &rows) {
        if (!isGood() || total == 0 || !wants(table))
            return;
        RowWriter writer(store, table, total, mMeter, mRecorder);
        rows(writer);
        mFailed = !writer.finish();
    }
    /// Writes a row for each object of a list; @p bind binds its columns but for the network's.
    template <class List, class Bind>
    void writeEach(const char *table, const List &objects, const Bind &bind) {
        write(table, qint64(objects.size()), [&](RowWriter &row) {
            for (const auto &object : objects) {
                bind(row.bindNet(), *object);
                if (!row.exec())
                    return;
            }
        });
    }
    /// Writes a row for each object of a list @p owned that every object of a list has; @p bind binds its
    /// columns but for the network's.
    template <class List, class Owner, class Owned, class Bind>
    void writeOwned(const char *table, const List &owners, Owned Owner::*owned, const Bind &bind) {
        qint64 total = 0;
        for (const auto &owner : owners)
            total += ((*owner).*owned).size();
        write(table, total, [&](RowWriter &row) {
            for (const auto &owner : owners) {
                for (const auto &object : (*owner).*owned) {
                    bind(row.bindNet(), *owner, object);
                    if (!row.exec())
                        return;
                }
            }
        });
    }

    /// A statement that is no row of a writer has failed.
    void check(bool good) { mFailed = mFailed || !good; }
    /// Ends the save, with a record. @return false
    bool refuse(long id, const QString &reason);
    /// Neither cancelled nor failed so far.
    bool isGood() const { return !mFailed && !mMeter.isCancelled(); }
    /// The save stands, and memory stays as it is.
    void keep() { mUndo.clear(); }

    const Store &store;
    NetContents &contents;

private:
    ProgressMeter mMeter;
    RowRecorder *mRecorder;
    bool mFailed = false;
    std::vector<std::function<void()>> mUndo;
};
