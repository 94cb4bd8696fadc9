#pragma once

#include "output/picture.h"

#include <string>

namespace tool {

/// Draws into a file whose extension tells the kind of picture, svg, png or pdf; without a file into
/// the terminal. Throws Failure when gnuplot is missing or fails.
void draw(const Picture& picture, const std::string& file);

} // namespace tool
