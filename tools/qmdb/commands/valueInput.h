#pragma once

#include "database/flatTable.h"

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace tool {

/// The numbers of a value, as a user gives them.
struct ValueInput {
    std::string type;
    std::vector<std::string> value;
    std::string file;
    std::vector<std::string> comments;

    bool isGiven() const noexcept { return !value.empty() || !file.empty(); }
};

struct GivenValue {
    Table table;
    PARAM_TYPE type {};
    std::vector<std::string> comments; ///< of the command line, then of the file
};

/// Adds --value, --file, --type and --comment; the group of the first two is returned.
CLI::Option_group* addValueInput(CLI::App& command, ValueInput& input);

/// Reads the numbers. Throws Failure that names what is wrong.
GivenValue readValue(const ValueInput& input);

/// "table of T, scalar, 3 points".
std::string formText(const Table& table, PARAM_TYPE type);

} // namespace tool
