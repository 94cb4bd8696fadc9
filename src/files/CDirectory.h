#pragma once

#include "qm/CQMDirectoryListing.h"
#include "qm/CQMInputFile.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// A directory as one load sees it: each level is listed once, at first use, and the listing serves
/// every scan of the load.
class CDirectory {
public:
    explicit CDirectory(std::shared_ptr<const std::string> path)
        : path_(std::move(path))
    {
    }

    const std::shared_ptr<const std::string>& path() const noexcept { return path_; }

    /// One "/" or "\" at the end of the path is left out for listing. Throws EQMException when the path
    /// is empty in the locale's encoding.
    const qm::CQMDirectoryListing& entries();

    /// Opens a file that lies in this directory.
    qm::CQMInputFile openFile(const std::string& name) const;

    /// The directories in this one. Their paths are this path, "/" and their names.
    std::vector<CDirectory>& subdirectories();

    /// The name of a directory that subdirectories() delivered.
    std::string_view name() const noexcept { return std::string_view(*path_).substr(nameAt_); }

    /// Frees all listings and closes what stayed open.
    void forget();

private:
    CDirectory(const CDirectory& parent, std::string_view name);

    /// The open directory that paths of entries may start from.
    qm::PathBase base() const noexcept;

    std::shared_ptr<const std::string> path_;
    std::size_t nameAt_ = 0;
    const CDirectory* parent_ = nullptr;
    bool staysOpen_ = true; ///< once it has been listed
    std::optional<qm::CQMDirectory> open_;
    std::optional<qm::CQMDirectoryListing> entries_;
    std::optional<std::vector<CDirectory>> subdirectories_;
};
