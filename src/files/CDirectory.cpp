#include "files/CDirectory.h"

#include "format/innerText.h"
#include "format/vocabulary.h"
#include "qm/CQMDirectoryScanner.h"
#include "qm/CQMOutputFile.h"
#include "qm/EQMException.h"
#include "qmdatabase/status.h"

#include <algorithm>
#include <cerrno>

namespace {

/// Directories beside more others are closed once listed: opening a database takes 8 descriptors at most.
constexpr std::size_t maxOpenInRoot = 1;
constexpr std::size_t maxOpenBelow = 4;

/// The error of a directory that is not there, or is none.
bool isNoDirectory(int number)
{
    return number == ENOENT || number == ENOTDIR;
}

/// The error of a system that can do no more, whichever directory is asked for.
bool isOutage(int number)
{
    return number == EMFILE || number == ENFILE || number == ENOMEM || number == EIO;
}

} // namespace

CDirectory::CDirectory(const CDirectory& parent, std::string_view name, bool staysOpen)
    : path_(std::make_shared<const std::string>(format::joinPath(*parent.path_, name)))
    , nameAt_(parent.path_->size() + 1)
    , parent_(&parent)
    , staysOpen_(staysOpen)
{
}

std::vector<CDirectory>& CDirectory::subdirectories()
{
    if (!subdirectories_) {
        const auto count
            = static_cast<std::size_t>(std::ranges::count_if(entries_, &Entry::mayBeDirectory));
        const bool stayOpen = count <= (parent_ ? maxOpenBelow : maxOpenInRoot);
        std::vector<CDirectory> found;
        found.reserve(count);
        for (const Entry& entry : entries_) {
            if (entry.mayBeDirectory) {
                found.push_back(CDirectory(*this, entry.name, stayOpen));
            }
        }
        subdirectories_ = std::move(found);
    }
    return *subdirectories_;
}

int CDirectory::list(const CLog& log)
{
    if (!listed_) {
        readListing();
    }
    if (listError_ == 0 || isNoDirectory(listError_)) {
        return QMDB_OK;
    }
    // Each scan reports it, though the directory is read once.
    log.error("Cannot list directory: ", CLog::Path { *path_ });
    return isOutage(listError_) ? QMDB_E_FILE : QMDB_OK;
}

void CDirectory::readListing()
{
    if (path_->empty() || (!format::text::isPlain(*path_) && format::text::toLocale(*path_).empty())) {
        throw qm::EQMException(qm::ErrorCode::InvalidArgument);
    }
    listed_ = true;
    const std::string_view listed = format::scannedPath(*path_);
    if (!listed.empty() && (listed.size() == path_->size() || path_->ends_with('/'))) {
        open();
        listError_ = handle_ ? readEntries(handle_.get()) : openError_;
    } else {
        // Paths of entries lead through another directory than is listed, as those of "a\" through "a\/".
        const qm::FileHandle directory
            = qm::CQMFileSystem::OpenDirectory({ AT_FDCWD, format::text::toLocale(std::string(listed)) });
        listError_ = directory ? readEntries(directory.get()) : errno;
    }
    if (!staysOpen_) {
        handle_ = qm::FileHandle();
    }
    if (listError_ != 0) {
        entries_.clear();
    }
}

int CDirectory::readEntries(int descriptor)
{
    qm::CQMDirectoryScanner scanner(descriptor);
    while (scanner.GetNext()) {
        if (entries_.empty()) {
            entries_.reserve(1 + scanner.mostAhead()); // there are many directories of few entries
        }
        entries_.push_back(
            { format::text::fromLocale(scanner.name()), scanner.mayBeDirectory(), scanner.mayBeFile() });
    }
    return scanner.error();
}

void CDirectory::open()
{
    // A name that could not be converted is empty; the path then leads to the parent.
    handle_ = qm::CQMFileSystem::OpenDirectory(parent_ && !name().empty()
            ? parent_->pathOf(std::string(name()))
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
        return qm::CQMFileSystem::FlushDirectory(handle_.get());
    }
    errno = openError_;
    return openError_ == EACCES;
}

qm::NativePath CDirectory::pathOf(std::string name) const
{
    if (handle_) {
        return { handle_.get(), format::text::toLocale(std::move(name)) };
    }
    if (!parent_) {
        return { AT_FDCWD, format::text::toLocale(format::joinPath(*path_, name)) };
    }
    // A name that could not be converted is empty, and must not make the path an absolute one.
    const std::string_view ownName = this->name();
    return parent_->pathOf(ownName.empty() ? std::move(name) : format::joinPath(ownName, name));
}

void CDirectory::close()
{
    listed_ = false;
    entries_ = {};
    subdirectories_.reset();
    handle_ = qm::FileHandle();
}
