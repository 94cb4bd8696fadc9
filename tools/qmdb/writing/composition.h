#pragma once

#include "database/entities.h"
#include "writing/descriptors.h"

#include <span>
#include <string>
#include <vector>

namespace tool::writing {

/// The text of a mixture's composition, each fraction in the shortest form that reads back as the same
/// number; empty for no components.
std::string compositionText(std::span<const COMPONENT> components);

/// The keys that make a substance the mixture of these components, and a pure one without any.
std::vector<KeyChange> compositionKeys(std::span<const COMPONENT> components);

} // namespace tool::writing
