#include "check/lines.h"

#include "files/CLineReader.h"

#include <fmt/format.h>

namespace tool::check {

namespace {

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
            CLineReader::maxLineLength),
        "shorten the line");
}

} // namespace

bool readLines(Context& context, const std::string& file, const std::function<void(const RawLine&)>& each)
{
    ++context.files;
    qm::CQMInputFile input(context.pathOf(file));
    if (!input.isOpen()) {
        context.findings.error("cannot-open", { file, 0 }, "the file cannot be opened",
            "give the right to read it, or remove a link that leads nowhere");
        return false;
    }
    CLineReader lines(input, false);
    RawLine line { {}, { file, 0 }, false };
    for (bool more = true; more;) {
        std::string_view bytes;
        const CLineReader::Result result = lines.next(bytes);
        if (result == CLineReader::Result::Failed) {
            context.findings.error(
                "cannot-read", { file, 0 }, "the file cannot be read", "replace it by a plain file");
            return false;
        }
        ++line.place.line;
        line.bytes = cutAtNul(context, bytes, line.place);
        line.endsFile = lines.hitEnd();
        each(line);
        if (result == CLineReader::Result::TooLong) {
            reportTooLong(context, line.place);
        }
        more = result == CLineReader::Result::Line && !line.endsFile;
    }
    return true;
}

} // namespace tool::check
