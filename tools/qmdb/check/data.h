#pragma once

#include "check/tree.h"

namespace tool::check {

/// Reports what is wrong with the data files of the heads of a substance, a phase or a phase change, and
/// data files that no head names.
void checkData(Context& context, const Entity& owner);

} // namespace tool::check
