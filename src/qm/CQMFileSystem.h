#pragma once

#include "qm/CQMDirectory.h"

#include <string>
#include <string_view>

namespace qm {

/// A path cut into its parts.
struct PathParts {
    std::string_view dir; ///< without its last separator
    std::string_view name; ///< without the extension
    std::string_view ext;
};

/// Paths, file tests, and the making and removing of entries. Paths are inner text (qm/text.h).
class CQMFileSystem {
public:
    /// Cuts at the last "/" or "\" and at the last "." behind it; the parts view `path`.
    /// A leading separator alone gives no directory.
    static PathParts SplitPath(std::string_view path, bool dropPoint) noexcept;
    static std::string_view ExtractDir(std::string_view path) noexcept;
    static std::string_view ExtractName(std::string_view path) noexcept;

    /// True when something stands at the path; links are followed, an error counts as nothing.
    static bool Exists(const std::string& path);
    /// True when the path can be opened for reading; a directory can.
    static bool FileExists(const std::string& path);

    /// Makes one directory (mode 0750 before the umask) in `parent`, which is flushed to the disk.
    /// Throws EQMException, also when something stands there already.
    static void MakeDir(const std::string& path, const CQMDirectory& parent);
    /// Removes a file or an empty directory. Throws EQMException.
    static void RemoveFile(const std::string& path);
};

} // namespace qm
