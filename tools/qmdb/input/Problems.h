#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tool {

/// Where something stands in what a user gives.
struct RowPlace {
    std::size_t row = 0; ///< counted from 1, without head, comments and empty lines
    std::size_t line = 0; ///< of the file, counted from 1
};

/// Collects what is wrong with the rows of a file, to tell all of it in one go.
class Problems {
public:
    /// `outcome` is what becomes of the rows: "nothing is added".
    Problems(std::string name, std::string_view outcome)
        : name_(std::move(name))
        , outcome_(outcome)
    {
    }

    /// `column` is a number or a name.
    void add(const RowPlace& place, std::string_view column, std::string_view what);
    void add(const RowPlace& place, std::string_view what);

    bool isFull() const noexcept { return count_ > mostCounted; }
    void throwIfAny() const;

private:
    static constexpr std::size_t mostCounted = 10000; ///< nobody wants to know how many more there are

    void add(std::string text);

    std::string name_;
    std::string outcome_;
    std::vector<std::string> texts_;
    std::size_t count_ = 0;
};

} // namespace tool
