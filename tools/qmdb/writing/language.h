#pragma once

#include <cstdint>
#include <string_view>

namespace tool::writing {

/// The string tables: one for languages that begin with "ru", one for all others.
enum class Language : std::uint8_t { Default, Russian };

Language languageOf(std::string_view name);

/// The texts of descriptors that string tables may replace.
enum class TextKey : std::uint8_t { Name, Comment, Units };

} // namespace tool::writing
