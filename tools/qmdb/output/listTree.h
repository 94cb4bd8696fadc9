#pragma once

#include "annotations/Annotations.h"
#include "database/Database.h"
#include "database/interpolation.h"
#include "output/Output.h"

#include <optional>
#include <string>
#include <vector>

namespace tool {

struct ListedParameter {
    Parameter parameter;
    ParameterNotes notes;
    bool isRead = false; ///< the value, and so what follows is known
    std::size_t points = 0;
    std::vector<Range> ranges; ///< of the arguments
    std::optional<std::string> comments; ///< of the data file, where they are asked for
    std::string error; ///< why the value cannot be read; else empty
};

struct ListedOwner {
    Owner owner;
    std::vector<ListedParameter> parameters;
};

struct ListedSubstance {
    Substance substance;
    SubstanceNotes notes;
    std::vector<ListedOwner> owners; ///< the substance itself first
};

enum class TreeColumns {
    Values, ///< type, points, units and ranges of the arguments
    Sources, ///< source and accuracy
};

/// An aligned tree. `all` are the substances of the database: mixtures name their components.
void printTree(Output& output, const std::vector<ListedSubstance>& listed, const std::vector<Substance>& all,
    TreeColumns columns);

} // namespace tool
