#pragma once

#include <string>
#include <string_view>

namespace tool {

/// True for the languages that the library reads from the Russian string table.
bool isRussian(std::string_view language);

/// The usual names of arguments, which no string table holds, in Russian; a name that is unknown as it is.
std::string argumentInRussian(std::string_view name);

} // namespace tool
