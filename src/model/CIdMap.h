#pragma once

#include "qmdatabase/status.h"

#include <algorithm>
#include <map>
#include <memory>
#include <numeric>
#include <utility>
#include <vector>

/// Objects by ID, in ascending order of ID. Those that are loaded lie in one block, as a database holds very
/// many small maps that hardly ever change; those inserted later have places of their own.
template <class Object>
class CIdMap {
    using Added = std::map<long, Object>;

public:
    bool empty() const noexcept { return size() == 0; }
    std::size_t size() const noexcept { return loaded_.size() + (added_ ? added_->size() : 0); }

    /// Makes room for so many objects in all.
    void reserve(std::size_t count) { loaded_.reserve(count); }

    /// Appends loaded objects in any order; they can be found once sort() has been called.
    void append(long id, Object&& object) { loaded_.emplace_back(id, std::move(object)); }

    /// Brings the loaded objects in order. Of objects with one ID the one appended last stands.
    void sort()
    {
        if (loaded_.size() == loaded_.capacity() && isAscending()) {
            return;
        }
        std::vector<std::size_t> order(loaded_.size());
        std::iota(order.begin(), order.end(), std::size_t { 0 });
        std::ranges::sort(order, {}, [this](std::size_t i) { return std::pair(loaded_[i].id, i); });
        std::vector<Entry> sorted;
        sorted.reserve(loaded_.size());
        for (const std::size_t i : order) {
            if (!sorted.empty() && sorted.back().id == loaded_[i].id) {
                sorted.pop_back();
            }
            sorted.push_back(std::move(loaded_[i]));
        }
        loaded_ = std::move(sorted);
    }

    /// An object outside of any map, with the room that it will need in one.
    class Node {
    public:
        Node(long id, Object&& object) { object_.emplace(id, std::move(object)); }
        Object& object() { return object_.begin()->second; }

    private:
        friend class CIdMap;
        Added object_;
    };

    /// Makes room for nodes, so that inserting one cannot fail.
    void prepare()
    {
        if (!added_) {
            added_ = std::make_unique<Added>();
        }
    }

    /// Inserts an object, after prepare(), in the place of one with its ID.
    void insert(Node node) noexcept
    {
        const long id = node.object_.begin()->first;
        if (Object* const present = find(id)) {
            *present = std::move(node.object());
        } else {
            added_->merge(node.object_);
        }
    }

    /// The object with this ID; null when there is none.
    const Object* find(long id) const noexcept { return findIn(*this, id); }
    Object* find(long id) noexcept { return findIn(*this, id); }

    /// Calls `use` with each ID and object.
    template <class Use>
    void forEach(Use&& use) const
    {
        auto loaded = loaded_.begin();
        if (added_) {
            for (const auto& [id, object] : *added_) {
                for (; loaded != loaded_.end() && loaded->id < id; ++loaded) {
                    use(loaded->id, loaded->object);
                }
                use(id, object);
            }
        }
        for (; loaded != loaded_.end(); ++loaded) {
            use(loaded->id, loaded->object);
        }
    }

private:
    struct Entry {
        Entry(long id, Object&& object)
            : id(id)
            , object(std::move(object))
        {
        }

        long id;
        Object object;
    };

    template <class Self>
    static auto findIn(Self& self, long id) noexcept -> decltype(&self.loaded_.front().object)
    {
        // Most IDs have no gaps, which spares the search through memory: a tenth of the time of lists.
        const auto guess = self.loaded_.empty()
            ? 0
            : static_cast<std::size_t>(id) - static_cast<std::size_t>(self.loaded_.front().id);
        if (guess < self.loaded_.size() && self.loaded_[guess].id == id) {
            return &self.loaded_[guess].object;
        }
        const auto loaded = std::ranges::lower_bound(self.loaded_, id, {}, &Entry::id);
        if (loaded != self.loaded_.end() && loaded->id == id) {
            return &loaded->object;
        }
        if (!self.added_) {
            return nullptr;
        }
        const auto added = self.added_->find(id);
        return added == self.added_->end() ? nullptr : &added->second;
    }

    bool isAscending() const
    {
        return std::ranges::is_sorted(loaded_, std::ranges::less_equal {}, &Entry::id);
    }

    std::vector<Entry> loaded_;
    std::unique_ptr<Added> added_; ///< none of whose IDs is loaded
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
