#pragma once

#include <string>

namespace tool::check {

/// True when a directory holds a file of a database (a description, a string table or a substance), or
/// may hold one, because it cannot be listed.
bool holdsDatabase(const std::string& directory);

} // namespace tool::check
