#pragma once

#include "qmdatabase/values.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <span>

namespace values {

/// The numbers of a row in the order of the file's columns: the argument, then the value.
inline std::span<double, 2> numbersOf(TABLEROW& row)
{
    static_assert(sizeof(TABLEROW) == 2 * sizeof(double));
    return std::span<double, 2>(&row.x, 2);
}

inline std::span<double, 4> numbersOf(TABLEROWVECT& row)
{
    static_assert(sizeof(TABLEROWVECT) == 4 * sizeof(double));
    return std::span<double, 4>(&row.x, 4);
}

/// A growing array of rows that is handed out as values need it, made with array-new.
template <class Row>
class CRowArray {
public:
    /// Makes room for so many rows more. When they are as many, the array is not copied again.
    void expect(std::size_t rows) { resize(size_ + rows); }

    std::size_t size() const noexcept { return size_; }
    const Row& back() const noexcept { return rows_[size_ - 1]; }

    void push(const Row& row)
    {
        if (size_ == room_) {
            resize(2 * room_ + 4);
        }
        rows_[size_++] = row;
    }

    /// Hands the rows out; room that is a fifth or more of them is given back first.
    std::unique_ptr<Row[]> take()
    {
        if (room_ - size_ > size_ / 5) {
            resize(size_);
        }
        return std::move(rows_);
    }

private:
    void resize(std::size_t room)
    {
        auto rows = std::make_unique_for_overwrite<Row[]>(room);
        std::copy_n(rows_.get(), size_, rows.get());
        rows_ = std::move(rows);
        room_ = room;
    }

    std::unique_ptr<Row[]> rows_;
    std::size_t room_ = 0;
    std::size_t size_ = 0;
};

} // namespace values
