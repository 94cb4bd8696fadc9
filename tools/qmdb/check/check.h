#pragma once

#include "check/Findings.h"

#include <functional>
#include <string>

namespace tool::check {

/// Checks a whole database. `step` is told the number of substances once for each that is done. Returns
/// the number of files read.
std::size_t checkDatabase(
    const std::string& directory, Findings& findings, const std::function<void(std::size_t)>& step);

/// True when a directory holds a file of a database (a description, a string table or a substance), or
/// may hold one, because it cannot be listed.
bool holdsDatabase(const std::string& directory);

} // namespace tool::check
