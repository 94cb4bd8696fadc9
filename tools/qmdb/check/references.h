#pragma once

#include "check/tree.h"

namespace tool::check {

/// Reports IDs given twice and references between descriptors that lead nowhere or where they may not.
void checkReferences(Context& context, const Tree& tree);

} // namespace tool::check
