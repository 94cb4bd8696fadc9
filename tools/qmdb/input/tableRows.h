#pragma once

#include "database/flatTable.h"
#include "input/Problems.h"

#include <istream>
#include <string>
#include <vector>

namespace tool {

/// A row of numbers that a user gives, and where it stands.
struct InputRow : RowPlace {
    std::vector<double> numbers;
};

/// What a user's file of numbers holds.
struct InputRows {
    std::vector<InputRow> rows;
    std::vector<std::string> comments; ///< without their sign
};

/// Reads rows of equally many numbers, separated by commas, by semicolons, or by blanks and tabs.
///
/// A first row without any number is a head; lines that begin with "#" are comments. Throws Failure
/// that names row and column of what is wrong, all in one go.
InputRows readRows(std::istream& input, const std::string& name);

/// The rows as a table: arguments first, then the value or its three components. Throws Failure when
/// the library would refuse to read the table: arguments must increase.
Table tableOf(const std::vector<InputRow>& rows, const std::string& name);

} // namespace tool
