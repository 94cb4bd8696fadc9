#include "qm/CQMDirectoryListing.h"

#include "qm/CQMFileSystem.h"
#include "qm/CQMTranscoder.h"
#include "qm/EQMException.h"
#include "qm/handles.h"

#include <array>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

namespace qm {

namespace {

/// The directory test is a bit test, which block devices and sockets pass as well.
constexpr mode_t directoryBit = 0x4000;

EntryKind kindOf(int directory, const dirent64& entry)
{
    switch (entry.d_type) {
    case DT_DIR:
    case DT_BLK:
    case DT_SOCK:
        return EntryKind::Directory;
    case DT_REG:
        return EntryKind::RegularFile;
    case DT_LNK:
    case DT_UNKNOWN:
        break;
    default:
        return EntryKind::OtherFile;
    }
    struct stat status { };
    if (::fstatat(directory, entry.d_name, &status, 0) != 0) {
        return EntryKind::Missing;
    }
    return status.st_mode & directoryBit ? EntryKind::Directory : EntryKind::OtherFile;
}

bool isSelfOrParent(std::string_view name)
{
    return name == "." || name == "..";
}

} // namespace

CQMDirectoryListing::CQMDirectoryListing(std::string_view directory)
{
    std::string path = CQMTranscoder::TextToAnsi(directory);
    if (path.empty()) {
        throw EQMException(ErrorCode::InvalidArgument);
    }
    if (path.back() == '/' || path.back() == '\\') {
        path.pop_back();
    }
    const FileHandle handle(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK));
    open_ = static_cast<bool>(handle);
    // The plain call instead of opendir, which asks for the directory's status every time.
    alignas(dirent64) std::array<char, 32 * 1024> buffer;
    for (ssize_t size = 0; open_ && (size = ::getdents64(handle.get(), buffer.data(), buffer.size())) > 0;) {
        for (ssize_t at = 0; at < size;) {
            const auto& entry = *reinterpret_cast<const dirent64*>(buffer.data() + at);
            at += entry.d_reclen;
            if (!isSelfOrParent(entry.d_name)) {
                packed_ += static_cast<char>(kindOf(handle.get(), entry));
                packed_ += CQMTranscoder::AnsiToText(entry.d_name);
                packed_ += '\0';
            }
        }
    }
    packed_.shrink_to_fit();
}

bool CQMDirectoryListing::next(std::size_t& position, DirectoryEntry& entry) const noexcept
{
    if (position >= packed_.size()) {
        return false;
    }
    entry.kind = static_cast<EntryKind>(packed_[position]);
    entry.name = packed_.c_str() + position + 1;
    position += entry.name.size() + 2;
    return true;
}

bool CQMDirectoryScanner::GetNext(DirectoryEntry& entry) noexcept
{
    while (listing_.next(position_, entry)) {
        if ((entry.kind == EntryKind::Directory) != directories_) {
            continue;
        }
        if (mask_ == "*" || CQMFileSystem::SplitPath(entry.name, true).ext == mask_) {
            return true;
        }
    }
    return false;
}

} // namespace qm
