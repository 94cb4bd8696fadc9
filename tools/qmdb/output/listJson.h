#pragma once

#include "output/listTree.h"

namespace tool {

/// An array of the substances with all that belongs to them.
std::string listJson(const std::vector<ListedSubstance>& listed);

} // namespace tool
