#include "qm/CQMDirectoryListing.h"

#include "qm/CQMTranscoder.h"

#include <algorithm>
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

bool hasExtension(std::string_view name, std::string_view extension)
{
    return name.size() > extension.size() && name[name.size() - extension.size() - 1] == '.'
        && std::equal(
            extension.rbegin(), extension.rend(), name.rbegin()); // few characters, mostly another last
}

bool isSelfOrParent(std::string_view name)
{
    return name == "." || name == "..";
}

} // namespace

CQMDirectoryReader::CQMDirectoryReader(const CQMDirectory& directory)
    : directory_(directory.descriptor())
    , ansiIsAscii_(CQMTranscoder::IsAnsiAscii())
{
}

bool CQMDirectoryReader::next(DirectoryEntry& entry)
{
    for (;;) {
        if (at_ == end_) {
            // The plain call instead of opendir, which asks for the directory's status every time.
            const ssize_t size = ::getdents64(directory_, buffer_.data(), buffer_.size());
            if (size <= 0) {
                complete_ = size == 0;
                return false;
            }
            at_ = 0;
            end_ = static_cast<std::size_t>(size);
        }
        const auto& read = *reinterpret_cast<const dirent64*>(buffer_.data() + at_);
        at_ += read.d_reclen;
        entry.name = read.d_name;
        if (isSelfOrParent(entry.name)) {
            continue;
        }
        entry.kind = kindOf(directory_, read);
        if (!ansiIsAscii_ || !text::isPlain(entry.name)) {
            converted_ = CQMTranscoder::AnsiToText(entry.name);
            entry.name = converted_;
        }
        return true;
    }
}

CQMDirectoryListing::CQMDirectoryListing(const CQMDirectory& directory)
{
    packed_.reserve(1000);
    CQMDirectoryReader reader(directory);
    for (DirectoryEntry entry; reader.next(entry);) {
        const std::size_t length = entry.name.size();
        const std::array head { static_cast<char>(entry.kind), static_cast<char>(length & 0xFF),
            static_cast<char>(length >> 8) };
        packed_.append(head.data(), head.size()).append(entry.name);
    }
    packed_.shrink_to_fit();
}

bool CQMDirectoryListing::next(std::size_t& position, DirectoryEntry& entry) const noexcept
{
    if (position >= packed_.size()) {
        return false;
    }
    entry.kind = static_cast<EntryKind>(packed_[position]);
    const auto byte = [&](std::size_t at) { return static_cast<unsigned char>(packed_[position + at]); };
    const std::size_t length = byte(1) | static_cast<std::size_t>(byte(2)) << 8;
    entry.name = std::string_view(packed_).substr(position + 3, length);
    position += length + 3;
    return true;
}

bool CQMDirectoryScanner::GetNext(DirectoryEntry& entry) noexcept
{
    while (listing_.next(position_, entry)) {
        if ((entry.kind == EntryKind::Directory) != directories_) {
            continue;
        }
        if (mask_ == "*" || hasExtension(entry.name, mask_)) {
            return true;
        }
    }
    return false;
}

} // namespace qm
