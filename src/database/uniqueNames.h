#pragma once

#include "qm/CQMDirectory.h"

#include <string>
#include <string_view>

/// `prefix` + the smallest positive number that makes a free name in a directory + `extension`.
///
/// Entries of any kind block a number, links to nothing do not. Nothing is created, so another writer
/// may take the name meanwhile.
/// `path` is the directory's own.
std::string uniqueName(const qm::CQMDirectory& directory, std::string_view path, std::string_view prefix,
    std::string_view extension = {});
