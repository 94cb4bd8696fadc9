#pragma once

#include "check/lines.h"

namespace tool::check {

/// Reports every line of a data file that keeps the file from being read, or is not read as it stands.
void checkDataFile(Context& context, const std::string& file, long type, bool vector);

} // namespace tool::check
