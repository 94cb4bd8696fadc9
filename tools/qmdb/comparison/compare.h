#pragma once

#include "annotations/Annotations.h"
#include "database/Database.h"
#include "writing/descriptors.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace tool {

/// One of two databases that are compared.
struct Compared {
    explicit Compared(const Location& location)
        : database(location)
        , annotations(location.directory)
        , substances(database.substances())
        , descriptions(writing::describedParameters(writing::Edit(location.directory, location.language)))
    {
    }

    Database database;
    Annotations annotations;
    std::vector<Substance> substances;
    std::vector<writing::NewDescription> descriptions;
};

/// One thing that is not the same in two databases.
struct Difference {
    std::string kind; ///< "substance", "phase", "change", "parameter", "value": what it is found in
    std::string where; ///< "Density (7) of Water, phase Liquid"
    std::string what; ///< the key or the point; empty when only one of them has it
    std::optional<std::string> before;
    std::optional<std::string> after;
};

/// What differs in the second database, in the order of the first. Substances, phases, phase changes and
/// parameters are the same ones when number and name agree, else when the names do, else when the numbers
/// do. Numbers are the same up to a relative tolerance. `step` is called once for each substance.
std::vector<Difference> compare(
    const Compared& one, const Compared& other, double tolerance, const std::function<void()>& step);

} // namespace tool
