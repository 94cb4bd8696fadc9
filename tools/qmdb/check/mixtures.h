#pragma once

#include "check/Descriptor.h"

#include <set>

namespace tool::check {

/// Reports what is wrong with the composition of a substance. `ids` are those of all substances.
void checkComposition(Context& context, const Descriptor& substance, const std::set<long>& ids);

} // namespace tool::check
