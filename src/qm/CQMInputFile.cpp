#include "qm/CQMInputFile.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <numeric>
#include <sys/stat.h>

namespace qm {

std::size_t countLineEnds(std::string_view bytes) noexcept
{
    // One-byte counters, emptied before they overflow, are what the compiler makes fast code of.
    constexpr std::size_t lanes = 32;
    constexpr std::size_t maxRounds = 255;
    std::size_t total = 0;
    while (bytes.size() >= lanes) {
        std::array<unsigned char, lanes> counters {};
        const std::size_t rounds = std::min(bytes.size() / lanes, maxRounds);
        for (std::size_t round = 0; round < rounds; ++round) {
            for (std::size_t lane = 0; lane < lanes; ++lane) {
                counters[lane]
                    = static_cast<unsigned char>(counters[lane] + (bytes[round * lanes + lane] == '\n'));
            }
        }
        total = std::accumulate(counters.begin(), counters.end(), total);
        bytes.remove_prefix(rounds * lanes);
    }
    return total + static_cast<std::size_t>(std::ranges::count(bytes, '\n'));
}

CQMInputFile::CQMInputFile(const std::string& path, PathBase base)
    : file_(::openat(base.directory, CNativePath(path, base).c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK))
{
}

ssize_t CQMInputFile::read(char* to, std::size_t size) noexcept
{
    ssize_t count = 0;
    do {
        count = ::read(file_.get(), to, size);
    } while (count < 0 && errno == EINTR);
    offset_ += std::max<ssize_t>(count, 0);
    return count;
}

RestOfFile CQMInputFile::measureRest() const
{
    struct stat status { };
    if (::fstat(file_.get(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return {};
    }
    RestOfFile rest;
    std::array<char, 32768> piece;
    for (off_t at = offset_; at < status.st_size;) {
        const ssize_t count = ::pread(file_.get(), piece.data(), piece.size(), at);
        if (count <= 0) {
            break;
        }
        const auto size = static_cast<std::size_t>(count);
        rest.bytes += size;
        rest.lineEnds += countLineEnds({ piece.data(), size });
        at += count;
    }
    return rest;
}

} // namespace qm
