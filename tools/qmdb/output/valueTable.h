#pragma once

#include "annotations/Annotations.h"
#include "database/Database.h"
#include "output/Output.h"

namespace tool {

/// A field of a CSV line, in quotes where it needs them.
std::string csvField(std::string_view text);

/// A constant as one line, a table as columns with names and units in the head.
void printAligned(Output& output, std::string_view owner, const Parameter& parameter,
    const ParameterNotes& notes, const Table& table);

void printCsv(Output& output, const Parameter& parameter, const ParameterNotes& notes, const Table& table);

} // namespace tool
