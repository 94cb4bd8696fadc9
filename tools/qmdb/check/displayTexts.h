#pragma once

#include "check/tree.h"

namespace tool::check {

/// Reports names that are empty, cut or given twice, and what is wrong with the string tables.
void checkTexts(Context& context, const Tree& tree);

} // namespace tool::check
