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

/// Lists a directory; reports when that fails, names that are no use, and links that lead round in circles,
/// which it leaves out.
Listing list(Context& context, const std::string& directory);

/// True for a symbolic link.
bool isLink(const Context& context, const std::string& directory);

bool isStringTable(std::string_view name);

/// Reports files of the database's own kinds that no scan of this directory finds: their extension is
/// not quite one that is looked for here. Foreign files, such as notes, are no matter.
void reportStrayFiles(
    Context& context, const Listing& listing, std::initializer_list<std::string_view> expected);

/// Reports the database's files in a directory so deep that no scan gets there, links left out. Data files
/// are left out too: a head may name one in a directory below its own.
void reportUnreadFiles(Context& context, const std::string& directory);

} // namespace tool::check
