#pragma once

#include "format/plainNumbers.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// The lines of data files, decoded and without CR. A line is skipped, or a row of numbers, or, in a file
/// of two arguments, the header of a subtable.
namespace format {

/// True for an empty line and a comment.
bool isSkipped(std::string_view line) noexcept;

/// What follows "P=" in the header of a subtable; none for any other line.
std::optional<std::string_view> firstArgumentOf(std::string_view line) noexcept;

/// Cuts a line at runs of blanks. A line that holds no blank at all yields no token.
std::vector<std::string> splitString(std::string_view text);

enum class RowFault {
    None,
    Columns, ///< other than as many numbers as are wanted
    Number, ///< a column that no number begins
};

struct RowResult {
    RowFault fault = RowFault::None;
    std::size_t column = 0; ///< where a number is bad, counted from 0
};

/// Reads exactly as many numbers from a line as the span has.
RowResult parseRow(std::string_view line, std::span<double> numbers);

/// The same for the raw bytes of a line in the plain form that nearly all rows have, where
/// plainNumbersAllowed(). False says nothing about the line.
bool parsePlainRow(std::string_view bytes, std::span<double> numbers) noexcept;

/// True when an argument may follow the one before: arguments increase strictly. A NaN has no place in an
/// order, so it is refused even in the first row.
bool mayFollow(std::optional<double> before, double argument) noexcept;

/// Appends a line of numbers with a blank between; a header begins with its sign.
void appendRow(std::string& bytes, std::span<const double> numbers, std::string_view sign = {});

} // namespace format
