#include "files/CDirectory.h"

#include "format/innerText.h"
#include "format/vocabulary.h"
#include "qm/CQMDirectoryScanner.h"
#include "qm/CQMOutputFile.h"
#include "qm/EQMException.h"
#include "qmdatabase/status.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <span>

namespace {

/// Directories beside more others are closed once listed: opening a database takes 8 descriptors at most.
constexpr std::ptrdiff_t maxOpenInRoot = 1;
constexpr std::ptrdiff_t maxOpenBelow = 4;

constexpr std::size_t maxBytesAhead = 65536; ///< of one directory
constexpr std::size_t maxFileAhead = 4096;
constexpr std::size_t usualBytesAhead = 240; ///< of one directory

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

/// The files that loading reads below a substance.
bool isReadWhenLoading(std::string_view name) noexcept
{
    return format::hasExtension(name, format::headExtension)
        || format::hasExtension(name, format::phaseExtension)
        || format::hasExtension(name, format::phaseChangeExtension);
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
        const auto count = std::ranges::count_if(entries_, [](auto& entry) { return entry.mayBeDirectory; });
        const bool stayOpen = count <= (parent_ ? maxOpenBelow : maxOpenInRoot);
        std::vector<CDirectory> found;
        found.reserve(static_cast<std::size_t>(count));
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
        readAhead();
        handle_ = qm::FileHandle();
        entries_.shrink_to_fit(); // there are many of these
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
            entries_.reserve(1 + scanner.entriesAhead());
        }
        entries_.push_back({ format::text::fromLocale(scanner.name()), scanner.mayBeDirectory(),
            scanner.mayBeFile(), scanner.isRegular(), false, 0, 0 });
    }
    return scanner.error();
}

void CDirectory::readAhead()
{
    // Not in a substance's directory: the bytes would wait until all substances before it are loaded.
    const bool isBelowSubstance = parent_ && parent_->parent_;
    if (!handle_ || listError_ != 0 || !isBelowSubstance) {
        return;
    }
    ahead_.reserve(usualBytesAhead);
    for (Entry& entry : entries_) {
        if (entry.isRegular && isReadWhenLoading(entry.name) && ahead_.size() < maxBytesAhead) {
            readAhead(entry);
        }
    }
}

void CDirectory::readAhead(Entry& entry)
{
    qm::CQMInputFile file(pathOf(entry.name));
    std::array<char, maxFileAhead> buffer;
    for (std::size_t size = 0; file.isOpen() && size < buffer.size();) {
        const ssize_t count = file.read(std::span(buffer).subspan(size));
        if (count < 0) {
            return;
        }
        if (count == 0) {
            entry.isReadAhead = true;
            entry.begin = static_cast<std::uint32_t>(ahead_.size());
            entry.size = static_cast<std::uint16_t>(size);
            ahead_.append(buffer.data(), size);
            return;
        }
        size += static_cast<std::size_t>(count);
    }
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
    ahead_ = {};
    subdirectories_.reset();
    handle_ = qm::FileHandle();
}
