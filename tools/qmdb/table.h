#pragma once

#include "Database.h"
#include "Output.h"

namespace tool {

/// A field of a CSV line, in quotes where it needs them.
std::string csvField(std::string_view text);

/// The arguments and components of a point that count in its table.
std::vector<double> numbersOf(const Table& table, const Point& point);

/// A constant as one line, a table as columns with names and units in the head.
void printAligned(Output& output, std::string_view owner, const Parameter& parameter, const Table& table);

void printCsv(Output& output, const Parameter& parameter, const Table& table);

} // namespace tool
