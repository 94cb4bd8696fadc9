#pragma once

#include "qmdatabase/status.h"

#include <algorithm>
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

    /// Makes room for so many objects in all.
    void reserve(std::size_t count) { entries_.reserve(count); }

    /// Appends objects in any order; they can be found once sort() has been called.
    void append(long id, Object&& object) { entries_.push_back({ id, std::move(object) }); }

    /// Brings the objects in order. Of objects with one ID the one appended last stands.
    void sort()
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

    /// Makes room for one object more, so that inserting it cannot fail.
    void reserveOne()
    {
        if (entries_.size() == entries_.capacity()) {
            entries_.reserve(2 * entries_.size() + 1);
        }
    }

    /// Inserts an object, in the place of one with its ID.
    void insert(long id, Object&& object)
    {
        const auto at = std::ranges::lower_bound(entries_, id, {}, &Entry::id);
        if (at != entries_.end() && at->id == id) {
            at->object = std::move(object);
        } else {
            entries_.insert(at, { id, std::move(object) });
        }
    }

    /// The object with this ID; null when there is none.
    const Object* find(long id) const noexcept { return find(entries_, id); }
    Object* find(long id) noexcept { return find(entries_, id); }

private:
    template <class Entries>
    static auto find(Entries& entries, long id) noexcept -> decltype(&entries.front().object)
    {
        const auto at = std::ranges::lower_bound(entries, id, {}, &Entry::id);
        return at != entries.end() && at->id == id ? &at->object : nullptr;
    }

    bool isAscending() const
    {
        return std::ranges::is_sorted(entries_, std::ranges::less_equal {}, &Entry::id);
    }

    std::vector<Entry> entries_;
};

/// Looks for an object of a CIdMap: 0 and the object, -9 when there is none at all, -2 when none has the ID.
template <class Map, class Object>
int find(Map& objects, long id, Object*& object)
{
    object = objects.find(id);
    if (object) {
        return QMDB_OK;
    }
    return objects.empty() ? QMDB_E_EMPTY : QMDB_E_NOT_FOUND;
}
