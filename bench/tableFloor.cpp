#include "tableFloor.h"

#include "qm/handles.h"

#include <algorithm>
#include <cstring>
#include <fcntl.h>
#include <stdexcept>
#include <sys/stat.h>

#if __has_include(<fast_float/fast_float.h>)
#include <fast_float/fast_float.h>
namespace numbers = fast_float;
#else
#include <charconv>
namespace numbers = std;
#endif

namespace bench {

namespace {

const char* lineEnd(const char* at, const char* end)
{
    return static_cast<const char*>(std::memchr(at, '\n', static_cast<std::size_t>(end - at)));
}

std::size_t numbersInRow(ValueKind kind)
{
    const std::size_t values = isVector(kind) ? 3 : 1;
    const bool hasArgument = kind != ValueKind::constant && kind != ValueKind::constantVector;
    return values + (hasArgument ? 1 : 0);
}

/// Room for all numbers: from the lines of a file that was read whole, else from the size of the file,
/// in which a number with the sign behind it takes eight bytes at least. Pages that stay empty cost
/// nothing.
std::size_t roomFor(int file, const char* text, std::size_t size, bool whole, std::size_t rowSize)
{
    if (whole) {
        return static_cast<std::size_t>(std::count(text, text + size, '\n')) * rowSize;
    }
    struct stat status { };
    if (::fstat(file, &status) != 0) {
        throw std::runtime_error("cannot ask for the size of a data file");
    }
    return static_cast<std::size_t>(status.st_size) / 8 + rowSize;
}

/// Parses whole lines to `to`; returns where the numbers end.
double* parseLines(const char* at, const char* end, std::size_t rowSize, double* to)
{
    double firstArgument = 0;
    while (at < end) {
        switch (*at) {
        case '#':
            at = lineEnd(at, end) + 1;
            break;
        case 'P':
            at = numbers::from_chars(at + 2, end, firstArgument).ptr + 1;
            break;
        default:
            for (std::size_t i = 0; i < rowSize; ++i) {
                at = numbers::from_chars(at, end, *to++).ptr + 1;
            }
        }
    }
    return to;
}

} // namespace

Numbers TableFloor::read(const std::filesystem::path& path, ValueKind kind)
{
    const qm::FileHandle file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    const std::size_t rowSize = numbersInRow(kind);
    Numbers numbers;
    double* to = nullptr;
    std::size_t kept = 0;
    for (bool more = true; more;) {
        const ssize_t size = ::read(file.get(), piece_.data() + kept, piece_.size() - kept);
        if (size < 0) {
            throw std::runtime_error("cannot read " + path.string());
        }
        const std::size_t filled = kept + static_cast<std::size_t>(size);
        more = filled == piece_.size(); // a short read is the end of the file
        const char* const begin = piece_.data();
        if (!to) {
            numbers.values.reset(new double[roomFor(file.get(), begin, filled, !more, rowSize)]);
            to = numbers.values.get();
        }
        const auto* const last = static_cast<const char*>(::memrchr(begin, '\n', filled));
        const std::size_t whole = last ? static_cast<std::size_t>(last + 1 - begin) : 0;
        to = parseLines(begin, begin + whole, rowSize, to);
        kept = filled - whole;
        std::memmove(piece_.data(), begin + whole, kept);
    }
    numbers.count = static_cast<std::size_t>(to - numbers.values.get());
    return numbers;
}

} // namespace bench
