#pragma once

#include "qmdatabase/records.h"

#include <cstddef>
#include <string_view>
#include <vector>

/// The values of the keys that tools have defined.
namespace format {

/// The items of a list, empty ones too, as they stand; none of an empty text. They view `text`.
std::vector<std::string_view> splitItems(std::string_view text);

/// How many arguments values of a type have; none for what is no type.
std::size_t argumentsOf(PARAM_TYPE type) noexcept;

/// Which of two items is that of an argument: the first is that of "p" and of the first argument of "T" and
/// "X", the second that of "t" and of the second argument of "T" and "X".
std::size_t itemIndexOf(PARAM_TYPE type, std::size_t argument) noexcept;

/// The item of an argument, counted from 0; one item holds for every argument. Empty when there is none, or
/// there are too many to tell.
std::string_view argumentItem(std::string_view items, PARAM_TYPE type, std::size_t argument);

/// "temperature" or "pressure", which an argument is unless a description names it otherwise; empty where it
/// may be anything.
std::string_view usualArgumentName(PARAM_TYPE type, std::size_t argument) noexcept;

/// True for a CAS registry number whose check digit is right: "7732-18-5".
bool isCasNumber(std::string_view text) noexcept;

} // namespace format
