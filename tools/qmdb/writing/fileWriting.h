#pragma once

#include <filesystem>
#include <string_view>

/// Files and directories that are on the disk when a function returns. Paths are in the locale's encoding.
/// All throw Failure.
namespace tool::writing {

enum class Existing { Refuse, Replace };

/// Writes a file, which appears complete or not at all: it is written beside its place under a name that no
/// scan matches, flushed, and moved there; then the directory is flushed.
void writeWholeFile(const std::filesystem::path& path, std::string_view bytes, Existing existing);

/// Writes a new file where nobody looks yet: it is neither flushed nor moved.
void writeUnseenFile(const std::filesystem::path& path, std::string_view bytes);

void makeDirectory(const std::filesystem::path& path);
void removeFile(const std::filesystem::path& path);
void flushDirectory(const std::filesystem::path& path);
/// Flushes all that was written to the file system of a directory.
void flushFileSystem(const std::filesystem::path& directory);

/// "cannot write "X": why", of the last system call.
[[noreturn]] void throwSystemFailure(std::string_view what, const std::filesystem::path& path);

} // namespace tool::writing
