#include "files/CDirectory.h"

namespace {

/// Directories beside many others are closed once listed, so that the host does not run out of files.
constexpr std::size_t maxOpenSiblings = 8;

} // namespace

CDirectory::CDirectory(const CDirectory& parent, std::string_view name)
    : path_(std::make_shared<const std::string>(*parent.path_ + "/" + std::string(name)))
    , nameAt_(parent.path_->size() + 1)
    , parent_(&parent)
{
}

const qm::CQMDirectoryListing& CDirectory::entries()
{
    if (!entries_) {
        entries_.emplace(*path_, parent_ ? parent_->base() : qm::PathBase());
        qm::FileHandle handle = entries_->takeHandle();
        // Behind a backslash at the end of its path another directory was listed than files are read in.
        if (staysOpen_ && !path_->ends_with('\\')) {
            handle_ = std::move(handle);
        }
    }
    return *entries_;
}

qm::PathBase CDirectory::base() const noexcept
{
    if (handle_) {
        return { handle_.get(), path_->size() + 1 };
    }
    return parent_ ? parent_->base() : qm::PathBase();
}

std::vector<CDirectory>& CDirectory::subdirectories()
{
    if (!subdirectories_) {
        std::vector<CDirectory> found;
        qm::CQMDirectoryScanner scanner(entries(), "*", true);
        for (qm::DirectoryEntry entry; scanner.GetNext(entry);) {
            found.push_back(CDirectory(*this, entry.name));
        }
        for (CDirectory& directory : found) {
            directory.staysOpen_ = found.size() <= maxOpenSiblings;
        }
        subdirectories_ = std::move(found);
    }
    return *subdirectories_;
}

void CDirectory::forget()
{
    entries_.reset();
    subdirectories_.reset();
    handle_ = qm::FileHandle();
}
