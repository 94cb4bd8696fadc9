#pragma once

#include "annotations/Annotations.h"

namespace tool {

/// Warns on standard error when the library reads a data file otherwise than it stands there.
void warnOfMisreadings(const Annotations& annotations, const std::string& dataFile,
    const Substance& substance, const Owner& owner, const Parameter& parameter);

} // namespace tool
