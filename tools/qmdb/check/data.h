#pragma once

#include "check/tree.h"

namespace tool::check {

/// Reports what is wrong with the data files of the heads of a substance, a phase or a phase change, and
/// data files that no head names.
void checkData(Context& context, const Entity& owner);

/// Reports every line of a data file that keeps the file from being read, or is not read as it stands.
void checkDataFile(Context& context, const std::string& file, long type, bool vector);

} // namespace tool::check
