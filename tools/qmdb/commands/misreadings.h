#pragma once

#include "check/ValueFiles.h"
#include "database/entities.h"

namespace tool {

/// Warns on standard error when the library reads a data file otherwise than it stands there.
void warnOfMisreadings(const check::ValueNotes& notes, const Substance& substance, const Owner& owner,
    const Parameter& parameter);

} // namespace tool
