#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>

namespace values {

/// A growing array of rows that is handed out as values need it, made with array-new.
template <class Row>
class CRowArray {
public:
    /// Makes room for so many rows in all.
    void reserve(std::size_t rows)
    {
        if (rows > room_) {
            resize(rows);
        }
    }

    std::size_t size() const noexcept { return size_; }
    bool isFull() const noexcept { return size_ == room_; }
    const Row& back() const noexcept { return rows_[size_ - 1]; }

    void push(const Row& row)
    {
        if (isFull()) {
            resize(2 * room_ + 4);
        }
        rows_[size_++] = row;
    }

    /// Hands the rows out; room that is a tenth or more of them is given back first.
    std::unique_ptr<Row[]> release()
    {
        if (room_ - size_ > size_ / 10) {
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
