#pragma once

#include "files/CDirectory.h"

#include <string>
#include <string_view>

/// `prefix` + the smallest positive number that makes a free name in an open directory + `extension`.
///
/// Entries of any kind block a number, links to nothing do not. Nothing is created, so another writer
/// may take the name meanwhile.
std::string uniqueName(const CDirectory& directory, std::string_view prefix, std::string_view extension = {});
