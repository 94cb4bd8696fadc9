#pragma once

#include "database/flatTable.h"

#include <string>

namespace tool {

/// The numbers of a value in the shorter of two forms: decimal numbers with blanks between, or "=" and the
/// base64 form of their bytes (IEEE 754, little end first). Both keep every bit of a number.
///
/// Of a table of two arguments there are for each subtable: its first argument, its number of rows, its rows.
std::string encodedNumbers(const Table& table);

} // namespace tool
