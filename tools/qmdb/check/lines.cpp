#include "check/lines.h"

#include "format/CLineCutter.h"
#include "format/innerText.h"
#include "format/paths.h"
#include "format/vocabulary.h"

#include <cerrno>
#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tool::check {

namespace {

using Cut = format::CLineCutter::Result;

/// The bytes of a file.
class InputFile {
public:
    /// Nothing waits, so that a FIFO cannot hang the check.
    explicit InputFile(const std::string& path)
        : descriptor_(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK))
    {
    }
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;
    ~InputFile()
    {
        if (isOpen()) {
            ::close(descriptor_);
        }
    }

    bool isOpen() const noexcept { return descriptor_ >= 0; }
    bool isPlain() const noexcept
    {
        struct stat status { };
        return ::fstat(descriptor_, &status) == 0 && S_ISREG(status.st_mode);
    }

    /// Gives the cutter more bytes; false when reading fails.
    bool feed(format::CLineCutter& lines) const noexcept
    {
        const auto room = lines.room();
        ssize_t count = 0;
        do {
            count = ::read(descriptor_, room.data(), room.size());
        } while (count < 0 && errno == EINTR);
        if (count >= 0) {
            lines.received(static_cast<std::size_t>(count));
        }
        return count >= 0;
    }

private:
    int descriptor_;
};

/// The line without what stands behind a NUL, which the library does not see.
std::string_view cutAtNul(Context& context, std::string_view bytes, const Place& place)
{
    const std::size_t end = bytes.find('\0');
    if (end != std::string_view::npos) {
        context.findings.error(
            "nul-byte", place, "a NUL byte ends the line early; the rest is not read", "remove the byte");
    }
    return bytes.substr(0, end);
}

void reportTooLong(Context& context, const Place& place)
{
    context.findings.error("long-line", place,
        fmt::format("the line is longer than {} bytes; it is cut, and nothing behind it is read",
            format::maxLineLength),
        "shorten the line");
}

/// False when reading fails on the way.
bool eachLine(Context& context, const InputFile& input, const std::string& file,
    const std::function<void(const RawLine&)>& each)
{
    format::CLineCutter lines;
    RawLine line { {}, { file, 0 }, false };
    std::string_view bytes;
    for (Cut cut = Cut::Line; cut != Cut::TooLong && !line.endsFile;) {
        cut = lines.next(bytes);
        if (cut == Cut::NeedBytes) {
            if (!input.feed(lines)) {
                return false;
            }
            continue;
        }
        ++line.place.line;
        line.bytes = cutAtNul(context, bytes, line.place);
        line.endsFile = lines.hitEnd();
        each(line);
        if (cut == Cut::TooLong) {
            reportTooLong(context, line.place);
        }
    }
    return true;
}

} // namespace

std::string Context::pathOf(std::string_view file) const
{
    return format::text::toLocale(file.empty() ? root : format::joinPath(root, file));
}

bool readLines(Context& context, const std::string& file, const std::function<void(const RawLine&)>& each)
{
    ++context.files;
    const InputFile input(context.pathOf(file));
    if (!input.isOpen()) {
        context.findings.error("cannot-open", { file, 0 }, "the file cannot be opened",
            "give the right to read it, or remove a link that leads nowhere");
        return false;
    }
    if (!input.isPlain() || !eachLine(context, input, file, each)) {
        context.findings.error(
            "cannot-read", { file, 0 }, "the file cannot be read", "replace it by a plain file");
        return false;
    }
    return true;
}

} // namespace tool::check
