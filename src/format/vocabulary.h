#pragma once

#include "qmdatabase/records.h"

#include <cstddef>
#include <string_view>

/// The words and limits of the file format, each once. DO NOT CHANGE THEM: they stand in the files of
/// every database.
namespace format {

// Names of directories and files. The number behind a prefix is the first that is free.
inline constexpr std::string_view substancePrefix = "Substance";
inline constexpr std::string_view phasePrefix = "Phase";
inline constexpr std::string_view phaseChangePrefix = "PC";
inline constexpr std::string_view headPrefix = "Property";

// Extensions are compared letter by letter: "MTD" is none of them.
inline constexpr std::string_view substanceExtension = "mtd"; ///< one in each directory below the root
inline constexpr std::string_view phaseExtension = "phd"; ///< one in a directory below a substance's
inline constexpr std::string_view phaseChangeExtension = "pcd"; ///< one in a directory below a substance's
inline constexpr std::string_view descriptionExtension = "prd"; ///< any number in the root
inline constexpr std::string_view headExtension = "prh"; ///< any number beside their owner's descriptor
inline constexpr std::string_view dataExtension = "dat"; ///< of new data files; a head may name any file
inline constexpr std::string_view temporaryEnding = ".tmp"; ///< of descriptors still being written

// The string tables in the root: one for languages that begin with "ru", one for all others.
inline constexpr std::string_view russianTable = "strings.lst";
inline constexpr std::string_view defaultTable = "default.lst";
inline constexpr std::string_view russianLanguage = "ru";

/// A descriptor that begins with these bytes is UTF-8; without them it is in the locale's encoding.
inline constexpr std::string_view utf8Mark = "\xEF\xBB\xBF";

/// Most bytes of a line before its LF, a CR and a mark included.
inline constexpr std::size_t maxLineLength = 1022;
/// A descriptor of so many bytes or more cannot be read.
inline constexpr std::size_t maxDescriptorSize = std::size_t { 1 } << 32;
/// Most characters of one number of a composition.
inline constexpr std::size_t maxNumberLength = 1023;

/// Ends the key of a descriptor's line; further ones belong to the value.
inline constexpr char keyEnd = '=';
/// A flag is true when its value is exactly this, and false for any other.
inline constexpr std::string_view trueFlag = "1";
inline constexpr std::string_view falseFlag = "0";
/// "None" where an ID may be left out, and what running highest IDs begin with.
inline constexpr long noId = -1;

// Data files.
inline constexpr char commentSign = '#'; ///< as the first character of a line
inline constexpr std::string_view subtableSign = "P="; ///< begins a subtable; the first argument follows
inline constexpr char columnSeparator = ' '; ///< any number of them

// Compositions: "12:0.25;7:0.75".
inline constexpr char componentSeparator = ';';
inline constexpr char fractionSeparator = ':';
/// What the molar fractions of a mixture may add up to. There is no tolerance above.
inline constexpr double minSumOfFractions = 0.99;
inline constexpr double maxSumOfFractions = 1.0;

/// Between the items of keys that tools have defined: "H2O;R718".
inline constexpr char itemSeparator = ';';

/// The letters of "DataTypes", in the order of PARAM_TYPE, and of "AvForPhases", in that of
/// MATTER_STATE; both enumerations begin with 1 here.
inline constexpr std::string_view typeLetters = "CtpTX";
inline constexpr std::string_view stateLetters = "SLV";
/// For values outside the enumerations: no letter stands for them.
inline constexpr char noLetter = '\0';

constexpr bool isType(long type) noexcept
{
    return type >= 1 && type <= static_cast<long>(typeLetters.size());
}

constexpr bool isState(long state) noexcept
{
    return state >= 1 && state <= static_cast<long>(stateLetters.size());
}

constexpr char letterOf(PARAM_TYPE type) noexcept
{
    return isType(type) ? typeLetters[static_cast<std::size_t>(type) - 1] : noLetter;
}

constexpr char letterOf(MATTER_STATE state) noexcept
{
    return isState(state) ? stateLetters[static_cast<std::size_t>(state) - 1] : noLetter;
}

constexpr bool isAmong(char letter, std::string_view letters) noexcept
{
    return letter != noLetter && letters.find(letter) != std::string_view::npos;
}

static_assert(letterOf(PARAM_TYPE_TABLE2D_X) == 'X' && letterOf(MATTER_STATE_GAS) == 'V');

} // namespace format
