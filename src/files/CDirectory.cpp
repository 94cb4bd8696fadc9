#include "files/CDirectory.h"

#include "files/CFilePath.h"
#include "qm/EQMException.h"

namespace {

/// Directories beside many others are closed once listed, so that the host does not run out of files.
constexpr std::size_t maxOpenSiblings = 8;

} // namespace

CDirectory::CDirectory(const CDirectory& parent, std::string_view name)
    : path_(std::make_shared<const std::string>(joinPath(*parent.path_, name)))
    , nameAt_(parent.path_->size() + 1)
    , parent_(&parent)
{
}

const qm::CQMDirectoryListing& CDirectory::entries()
{
    if (entries_) {
        return *entries_;
    }
    if (*qm::CNativePath(*path_).c_str() == '\0') {
        throw qm::EQMException(qm::ErrorCode::InvalidArgument);
    }
    const bool endsInSeparator = path_->ends_with('/') || path_->ends_with('\\');
    // Such a path is not taken apart: the directory behind a last backslash is another than is listed.
    const qm::PathBase start = parent_ && !endsInSeparator ? parent_->base() : qm::PathBase();
    const std::string shortened = endsInSeparator ? path_->substr(0, path_->size() - 1) : std::string();
    open_.emplace(endsInSeparator ? shortened : *path_, start);
    entries_.emplace(*open_);
    if (!staysOpen_ || path_->ends_with('\\')) {
        open_.reset();
    }
    return *entries_;
}

qm::CQMInputFile CDirectory::openFile(const std::string& name) const
{
    if (open_) {
        return qm::CQMInputFile(name, { open_->descriptor(), 0 });
    }
    return qm::CQMInputFile(joinPath(*path_, name), base());
}

qm::PathBase CDirectory::base() const noexcept
{
    if (open_) {
        return open_->base();
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
    open_.reset();
}
