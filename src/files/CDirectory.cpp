#include "files/CDirectory.h"

#include "format/innerText.h"
#include "format/vocabulary.h"
#include "qm/CQMDirectoryScanner.h"
#include "qm/CQMOutputFile.h"
#include "qm/EQMException.h"

#include <cerrno>

namespace {

/// Directories beside many others are closed once listed, so that the host does not run out of files.
constexpr std::size_t maxOpenSiblings = 8;

constexpr std::size_t usualEntries = 16; // of a substance or a phase

} // namespace

CDirectory::CDirectory(const CDirectory& parent, std::string_view name)
    : path_(std::make_shared<const std::string>(format::joinPath(*parent.path_, name)))
    , nameAt_(parent.path_->size() + 1)
    , parent_(&parent)
{
}

std::vector<CDirectory>& CDirectory::subdirectories()
{
    if (!subdirectories_) {
        std::vector<CDirectory> found;
        for (const Entry& entry : entries()) {
            if (entry.isDirectory) {
                found.push_back(CDirectory(*this, entry.name));
            }
        }
        for (CDirectory& directory : found) {
            directory.staysOpen_ = found.size() <= maxOpenSiblings;
        }
        subdirectories_ = std::move(found);
    }
    return *subdirectories_;
}

const std::vector<CDirectory::Entry>& CDirectory::entries()
{
    if (entries_) {
        return *entries_;
    }
    if (format::text::toLocale(*path_).empty()) {
        throw qm::EQMException(qm::ErrorCode::InvalidArgument);
    }
    entries_.emplace();
    const std::string listed(format::scannedPath(*path_));
    if (!listed.empty() && (listed == *path_ || listed + '/' == *path_)) {
        open();
        list(descriptor());
    } else {
        // Paths of entries lead through another directory than is listed, as those of "a\" through "a\/".
        list(qm::CQMFileSystem::OpenDirectory({ AT_FDCWD, format::text::toLocale(listed) }).get());
    }
    if (!staysOpen_) {
        handle_ = qm::FileHandle();
    }
    return *entries_;
}

void CDirectory::list(int descriptor)
{
    entries_->reserve(usualEntries);
    qm::CQMDirectoryScanner scanner(descriptor);
    while (scanner.GetNext()) {
        entries_->push_back({ format::text::fromLocale(scanner.name()), scanner.isDirectory() });
    }
}

void CDirectory::open()
{
    const std::string ownName(name());
    // A name that could not be converted is empty; the path then leads to the parent.
    handle_ = qm::CQMFileSystem::OpenDirectory(parent_ && !ownName.empty()
            ? parent_->pathOf(ownName)
            : qm::NativePath { AT_FDCWD, format::text::toLocale(*path_) });
    openError_ = handle_ ? 0 : errno;
}

void CDirectory::makeDirectory(const std::string& name) const
{
    qm::CQMFileSystem::MakeDir(pathOf(name));
    if (!flush()) {
        qm::CQMFileSystem::ThrowMakeDirError(errno);
    }
}

bool CDirectory::writeWholeFile(const std::string& name, std::string_view bytes) const
{
    const qm::NativePath path = pathOf(name);
    if (!qm::writeWholeFile(path, bytes, format::temporaryEnding)) {
        return false;
    }
    if (!flush()) {
        qm::CQMFileSystem::TryRemoveFile(path);
        return false;
    }
    return true;
}

bool CDirectory::flush() const noexcept
{
    if (handle_) {
        return qm::CQMFileSystem::Flush(handle_.get());
    }
    errno = openError_;
    return openError_ == EACCES;
}

qm::NativePath CDirectory::pathOf(const std::string& name) const
{
    if (handle_) {
        return { handle_.get(), format::text::toLocale(name) };
    }
    if (!parent_) {
        return { AT_FDCWD, format::text::toLocale(format::joinPath(*path_, name)) };
    }
    // A name that could not be converted is empty, and must not make the path an absolute one.
    const std::string_view ownName = this->name();
    return parent_->pathOf(ownName.empty() ? name : format::joinPath(ownName, name));
}

void CDirectory::close()
{
    entries_.reset();
    subdirectories_.reset();
    handle_ = qm::FileHandle();
}
