#pragma once

#include "input/Problems.h"

#include <functional>
#include <span>
#include <string>
#include <string_view>

namespace tool {

/// A row of a file whose columns have names.
struct Record {
    RowPlace place;
    /// One for each column that is asked for, empty where the file has none. They live as long as the call.
    std::span<const std::string_view> fields;
    bool decimalComma = false; ///< semicolons or tabs separate, so that a comma in a number is its point
};

/// Reads rows of CSV (with a head line, separated by commas, semicolons or tabs), of JSON Lines, or of one
/// JSON array; which it is the first character tells. Throws Failure for what is none of these, and for
/// columns that are not among `columns`.
void readRecords(std::string_view bytes, const std::string& name, std::span<const std::string_view> columns,
    const std::function<void(const Record&)>& use);

} // namespace tool
