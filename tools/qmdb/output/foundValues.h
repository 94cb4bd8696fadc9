#pragma once

#include "database/Database.h"
#include "output/Output.h"

#include <string>
#include <vector>

namespace tool {

/// A number that something found has.
struct FoundValue {
    Substance substance;
    Owner owner;
    std::string_view component; ///< of a vector
    PARAM_TYPE type {};
    double value = 0;
};

enum class Form { Aligned, Csv, Json };

/// The numbers of one parameter, with its name and units; `at` tells where they are read.
void printFound(Output& output, Form form, const Parameter& parameter, const std::string& at,
    const std::vector<FoundValue>& found);

/// Something that goes by a name.
struct FoundName {
    std::string kind; ///< "substance", "phase", "phase change", "parameter"
    long id = 0;
    std::string name;
    std::string substance; ///< of a phase or a phase change
    long substanceId = -1;
    std::string details;
};

void printFound(Output& output, Form form, const std::vector<FoundName>& found);

} // namespace tool
