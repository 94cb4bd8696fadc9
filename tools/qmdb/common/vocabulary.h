#pragma once

#include <string_view>

/// The words and limits of the file format that commands need; checking, which knows the format, has them.
namespace tool::vocabulary {

extern const std::string_view utf8Mark; ///< begins a file that is UTF-8
extern const std::string_view defaultTable;
extern const std::string_view russianTable;
extern const std::string_view descriptionExtension;
extern const std::string_view typeLetters; ///< in the order of PARAM_TYPE, which begins with 1

/// What the molar fractions of a mixture may add up to.
bool isSumAllowed(double sum);

} // namespace tool::vocabulary
