#pragma once

#include "writing/EditState.h"
#include "writing/values.h"

namespace tool::writing {

/// Adds the data file and the head of a value whose owner is known not to have it.
void makeValue(EditState& state, const std::string& directory, const NewValue& value);

void applyKeys(DescriptorText& descriptor, const std::vector<KeyChange>& keys);

/// Adds the file of a new description, and returns its name.
std::string makeDescription(EditState& state, long id, const NewDescription& description);

} // namespace tool::writing
