#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

/// Paths and names of a database's files. Both "/" and "\" separate, on every system; paths are made
/// with "/".
namespace format {

/// A path cut into its parts.
struct PathParts {
    std::string_view dir; ///< without its last separator; empty when that leads the path
    std::string_view name; ///< without the extension
    std::string_view ext; ///< without its point
};

/// Cuts at the last separator and at the last "." after it; the parts view `path`.
PathParts splitPath(std::string_view path) noexcept;

/// True when no separator stands in a name.
bool isBareName(std::string_view name) noexcept;

/// Directory, "/" and name.
std::string joinPath(std::string_view directory, std::string_view name);

/// A path for the log: control characters, which names of entries may hold, become "?".
std::string shown(std::string_view path);

/// The path of the directory that a scan of `directory` lists: one separator at the end is dropped.
std::string_view scannedPath(std::string_view directory) noexcept;

/// splitPath(name).ext == extension, faster.
bool hasExtension(std::string_view name, std::string_view extension) noexcept;

/// The series of names that new directories and files get.
enum class Series { Substances, Phases, PhaseChanges, Heads };
inline constexpr std::size_t seriesCount = 4;

/// The name of a new directory or file: prefix, number and, for a file, "." and extension.
std::string numberedName(Series series, std::size_t number);

/// The number of a name that numberedName() may have made; none for every other name.
std::optional<std::size_t> numberOf(std::string_view name, Series series) noexcept;

} // namespace format
