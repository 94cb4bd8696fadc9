#pragma once

#include "output/picture.h"

#include <string>

namespace tool {

/// The commands that draw a picture for a file whose extension tells its kind, svg, png or pdf; without a
/// file for the terminal. Throws Failure for other extensions.
std::string gnuplotScript(const Picture& picture, const std::string& file);

/// The same as a program that a person can go on from: it draws into the file, or without one into a window.
std::string gnuplotProgram(const Picture& picture, const std::string& file);

} // namespace tool
