#pragma once

#include "annotations/Annotations.h"
#include "database/Database.h"
#include "output/foundValues.h"

#include <string_view>
#include <vector>

namespace tool {

/// What goes by a text, without regard to case: it is part of a name or an alias, or the whole of a formula,
/// a CAS number or a symbol. What is called exactly so comes first.
std::vector<FoundName> findNames(
    const Database& database, const Annotations& annotations, std::string_view text);

} // namespace tool
