#pragma once

#include "check/tree.h"

namespace tool::check {

/// Reports IDs given twice and references between descriptors that lead nowhere or where they may not.
void checkReferences(Context& context, const Tree& tree);

/// Reports what is wrong with the composition of a substance. `ids` are those of all substances.
void checkComposition(Context& context, const Descriptor& substance, const std::set<long>& ids);

/// Reports names that are empty, cut or given twice, and what is wrong with the string tables.
void checkTexts(Context& context, const Tree& tree);

} // namespace tool::check
