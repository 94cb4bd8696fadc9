#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

/// Files of a database as the library finds and reads them. Paths are below the database's directory, in
/// inner text.
namespace tool {

/// The path of an entry of a directory, "" for the database's own.
std::string entryPath(std::string_view directory, std::string_view name);

/// The path of a file or directory in the locale's encoding; empty when the locale cannot express it.
std::string nativePath(std::string_view root, std::string_view file);

/// An entry of a directory.
struct DirectoryEntry {
    std::string name; ///< inner text; empty when the locale cannot convert it
    std::string_view nativeName;
    bool isDirectory = false; ///< for the library's scans; a link is what it leads to
    bool isLink = false;
};

/// Hands on the entries of a directory, whose path is in the locale's encoding, in no order. False when it
/// cannot be opened.
bool forEachEntry(const std::string& nativeDirectory, const std::function<void(const DirectoryEntry&)>& use);

/// The names in one directory, in no order.
struct Scan {
    std::vector<std::string> directories;
    std::vector<std::string> files;

    std::vector<std::string> filesWith(std::string_view extension) const;
};

/// Lists a directory; empty when that fails.
Scan scan(std::string_view root, std::string_view directory);

/// Hands on the lines of a file as the library cuts them, in bytes, as far as it can be read.
void forEachLine(
    std::string_view root, std::string_view file, const std::function<void(std::string_view)>& use);

} // namespace tool
