#pragma once

#include "qm/CQMDirectory.h"
#include "qmdatabase/status.h"

#include <algorithm>
#include <memory>
#include <numeric>
#include <utility>
#include <vector>

/// Objects by ID, in ascending order of ID and in one block: a database holds very many small maps that
/// hardly ever change.
template <class Object>
class CIdMap {
public:
    struct Entry {
        long id;
        Object object;
    };

    bool empty() const noexcept { return entries_.empty(); }
    std::size_t size() const noexcept { return entries_.size(); }
    auto begin() const noexcept { return entries_.begin(); }
    auto end() const noexcept { return entries_.end(); }

    /// Makes room for so many objects to be loaded.
    void beginLoading(std::size_t count) { entries_.reserve(count); }

    /// Takes objects in any order; they can be found once finishLoading() has been called.
    void load(long id, Object&& object) { entries_.push_back({ id, std::move(object) }); }

    /// Brings the objects in order. Of objects with one ID the one loaded last stands.
    void finishLoading()
    {
        if (entries_.size() == entries_.capacity() && isAscending()) {
            return;
        }
        std::vector<std::size_t> order(entries_.size());
        std::iota(order.begin(), order.end(), std::size_t { 0 });
        std::ranges::sort(order, {}, [this](std::size_t i) { return std::pair(entries_[i].id, i); });
        std::vector<Entry> sorted;
        sorted.reserve(entries_.size());
        for (const std::size_t i : order) {
            if (!sorted.empty() && sorted.back().id == entries_[i].id) {
                sorted.pop_back();
            }
            sorted.push_back(std::move(entries_[i]));
        }
        entries_ = std::move(sorted);
    }

    /// The object with this ID; null when there is none.
    const Object* find(long id) const noexcept
    {
        const auto at = std::ranges::lower_bound(entries_, id, {}, &Entry::id);
        return at != entries_.end() && at->id == id ? &at->object : nullptr;
    }
    Object* find(long id) noexcept { return const_cast<Object*>(std::as_const(*this).find(id)); }

    /// 0 when there is an object with this ID, -9 when the map is empty, -2 otherwise.
    int check(long id) const noexcept
    {
        if (empty()) {
            return QMDB_E_EMPTY;
        }
        return find(id) ? QMDB_OK : QMDB_E_NOT_FOUND;
    }

    /// Saves a new object and takes it in, in the place of one with its ID.
    int saveAndInsert(Object object, const qm::CQMDirectory& directory)
    {
        // Room is made first, so that what stands on the disk also stands in the map.
        if (entries_.size() == entries_.capacity()) {
            entries_.reserve(2 * entries_.size() + 1);
        }
        const long id = object.getID();
        const int code = object.saveFile(directory);
        if (code == QMDB_OK) {
            const auto at = std::ranges::lower_bound(entries_, id, {}, &Entry::id);
            if (at != entries_.end() && at->id == id) {
                at->object = std::move(object);
            } else {
                entries_.insert(at, { id, std::move(object) });
            }
        }
        return code;
    }

    /// Makes the caller's array of records, one for each object; -9 when there is none.
    template <class Record, class Fill>
    int list(Record*& records, int& count, Fill&& fill) const
    {
        records = nullptr;
        count = static_cast<int>(size());
        if (empty()) {
            return QMDB_E_EMPTY;
        }
        auto array = std::make_unique<Record[]>(size());
        for (std::size_t i = 0; i < size(); ++i) {
            fill(entries_[i].object, array[i]);
        }
        records = array.release();
        return QMDB_OK;
    }

private:
    bool isAscending() const
    {
        return std::ranges::is_sorted(entries_, std::ranges::less_equal {}, &Entry::id);
    }

    std::vector<Entry> entries_;
};
