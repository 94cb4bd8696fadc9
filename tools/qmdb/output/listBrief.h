#pragma once

#include "annotations/Annotations.h"
#include "database/Database.h"
#include "output/Output.h"

#include <string>
#include <vector>

namespace tool {

struct BriefSubstance {
    Substance substance;
    SubstanceNotes notes;
    std::vector<Owner> phases;
    std::size_t values = 0;
};

/// A line for each substance, in columns.
void printBrief(Output& output, const std::vector<BriefSubstance>& listed);

/// An array of the same.
std::string briefJson(const std::vector<BriefSubstance>& listed);

} // namespace tool
