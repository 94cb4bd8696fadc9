#pragma once

#include "annotations/Annotations.h"
#include "database/Database.h"
#include "output/Output.h"

#include <span>

namespace tool {

/// A value as it is shown.
struct ShownValue {
    std::string title; ///< what has it: "Water, phase Ice"
    Substance substance;
    Owner owner;
    Parameter parameter;
    ParameterNotes notes;
    Table table;
};

/// A field of a CSV line, in quotes where it needs them.
std::string csvField(std::string_view text);

/// A constant as one line, a table as columns with names and units in the head.
void printAligned(Output& output, const ShownValue& value);
/// The constant alone.
void printConstant(Output& output, const ShownValue& value);

/// One table; of several values each row begins with what has it. Throws Failure unless they have the same
/// columns.
void printCsv(Output& output, std::span<const ShownValue> values);

} // namespace tool
