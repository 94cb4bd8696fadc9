#include "qm/CQMDirectoryListing.h"

#include "qm/CQMTranscoder.h"

#include <array>
#include <cstring>
#include <dirent.h>
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
    return name.size() > extension.size() && name.ends_with(extension)
        && name[name.size() - extension.size() - 1] == '.';
}

bool isSelfOrParent(std::string_view name)
{
    return name == "." || name == "..";
}

} // namespace

CQMDirectoryListing::CQMDirectoryListing(const CQMDirectory& directory)
{
    if (!directory.isOpen()) {
        return;
    }
    const bool ansiIsAscii = CQMTranscoder::IsAnsiAscii();
    packed_.reserve(1000);
    // The plain call instead of opendir, which asks for the directory's status every time.
    alignas(dirent64) std::array<char, 32 * 1024> buffer;
    ssize_t size = 0;
    while ((size = ::getdents64(directory.descriptor(), buffer.data(), buffer.size())) > 0) {
        for (ssize_t at = 0; at < size;) {
            const auto& entry = *reinterpret_cast<const dirent64*>(buffer.data() + at);
            at += entry.d_reclen;
            const std::string_view name = entry.d_name;
            if (isSelfOrParent(name)) {
                continue;
            }
            const bool same = ansiIsAscii && text::isPlain(name);
            append(kindOf(directory.descriptor(), entry), same ? name : CQMTranscoder::AnsiToText(name));
        }
    }
    complete_ = size == 0;
    packed_.shrink_to_fit();
}

void CQMDirectoryListing::append(EntryKind kind, std::string_view name)
{
    packed_ += static_cast<char>(kind);
    packed_ += static_cast<char>(name.size() & 0xFF);
    packed_ += static_cast<char>(name.size() >> 8);
    packed_ += name;
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
