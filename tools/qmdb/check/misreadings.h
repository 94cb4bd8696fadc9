#pragma once

#include "database/entities.h"

#include <string>
#include <vector>

namespace tool::check {

/// What the library reads in a data file otherwise than it stands there. `file` is below `root`.
std::vector<std::string> misreadings(
    const std::string& root, const std::string& file, const Parameter& parameter);

} // namespace tool::check
