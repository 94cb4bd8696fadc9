#pragma once

#include "check/lines.h"

#include <initializer_list>
#include <string>
#include <vector>

namespace tool::check {

/// The names in one directory, sorted, as the library's scans see them.
struct Listing {
    std::string directory; ///< below the database's
    std::vector<std::string> directories;
    std::vector<std::string> files;
    bool isOpen = false;

    bool isEmpty() const { return directories.empty() && files.empty(); }
    std::vector<std::string> filesWith(std::string_view extension) const;
};

/// Lists a directory; reports when that fails and names that the locale cannot express.
Listing list(Context& context, const std::string& directory);

bool isStringTable(std::string_view name);

/// Reports files of the database's own kinds that no scan of this directory finds: their extension is
/// not quite one that is looked for here. Foreign files, such as notes, are no matter.
void reportStrayFiles(
    Context& context, const Listing& listing, std::initializer_list<std::string_view> expected);

/// Reports the database's files in a directory so deep that no scan gets there. Data files are left
/// out: a head may name one in a directory below its own.
void reportUnreadFiles(Context& context, const std::string& directory);

} // namespace tool::check
