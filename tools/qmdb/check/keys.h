#pragma once

#include "check/Descriptor.h"

namespace tool::check {

enum class DescriptorKind { Substance, Phase, PhaseChange, Description, Head };

/// Reports missing keys, keys that nobody reads, and values that are not what their keys call for.
void checkKeys(Context& context, const Descriptor& descriptor, DescriptorKind kind);

} // namespace tool::check
