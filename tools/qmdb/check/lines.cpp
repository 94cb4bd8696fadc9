#include "check/lines.h"

#include "annotations/InputFile.h"
#include "annotations/scan.h"

#include "format/CLineCutter.h"
#include "format/vocabulary.h"

#include <algorithm>
#include <fmt/format.h>
#include <optional>

namespace tool::check {

namespace {

using Cut = format::CLineCutter::Result;

bool isUtf16(std::string_view bytes)
{
    const bool marked = bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF");
    const auto nuls = static_cast<std::size_t>(std::ranges::count(bytes, '\0'));
    return marked || (nuls >= 2 && nuls * 3 >= bytes.size()); // every second byte in ASCII
}

/// True when a CR stands before the end of a line, where it ends nothing.
bool holdsCr(std::string_view bytes)
{
    return bytes.substr(0, bytes.size() - (bytes.empty() ? 0 : 1)).find('\r') != std::string_view::npos;
}

/// Hands on the lines of one file.
class LineReader {
public:
    LineReader(Context& context, const std::string& file, const std::function<void(const RawLine&)>& each)
        : findings_(context.findings)
        , line_ { {}, { file }, false, false }
        , each_(each)
    {
    }

    /// False when nothing of the file is of use; that has been reported.
    bool read(const InputFile& input)
    {
        for (;;) {
            std::string_view bytes;
            const Cut cut = lines_.next(bytes);
            if (cut == Cut::NeedBytes) {
                if (!input.feed(lines_)) {
                    return refuse("cannot-read", "the file cannot be read", "replace it by a plain file");
                }
                continue;
            }
            line_.isCut = cut == Cut::TooLong;
            line_.endsFile = lines_.hitEnd();
            if (++line_.place.line == 1 && !isText(bytes)) {
                return false;
            }
            handOn(bytes);
            if (line_.isCut || line_.endsFile) {
                return true;
            }
        }
    }

private:
    bool refuse(std::string_view kind, std::string_view what, std::string_view advice)
    {
        findings_.error(kind, { line_.place.file }, what, advice);
        return false;
    }

    /// Looks at the first line, which is the whole file when its lines end with CR alone.
    bool isText(std::string_view bytes)
    {
        if (isUtf16(bytes)) {
            return refuse("utf-16", "the file is UTF-16, of which nothing is read as it stands",
                "save it as UTF-8, for example with \"iconv -f UTF-16 -t UTF-8\"");
        }
        if ((line_.endsFile || line_.isCut) && holdsCr(bytes)) {
            return refuse("cr-only", "the lines end with CR alone, so that all of them count as one",
                "save the file with LF or CR LF as line ends");
        }
        return true;
    }

    void handOn(std::string_view bytes)
    {
        if (line_.isCut) {
            findings_.error("long-line", line_.place,
                fmt::format(
                    "the line is longer than {} bytes; nothing behind them is read", format::maxLineLength),
                "shorten the line");
        }
        const std::size_t end = bytes.find('\0');
        if (end != std::string_view::npos) {
            findings_.error("nul-byte", line_.place, "a NUL byte ends the line early; the rest is not read",
                "remove the byte");
        }
        line_.bytes = bytes.substr(0, end);
        if (holdsCr(line_.bytes)) {
            findings_.error("lone-cr", line_.place,
                "a CR that no LF follows ends no line: what stands behind it belongs to this one",
                "let each line end with LF or CR LF");
        }
        checkLineEnd();
        each_(line_);
    }

    /// A CR instead of a line's last character would pass for a line end.
    void checkLineEnd()
    {
        if (line_.isCut || line_.endsFile || isMixed_) {
            return;
        }
        const bool endsInCr = line_.bytes.ends_with('\r');
        isMixed_ = endsInCr != endsInCr_.value_or(endsInCr);
        endsInCr_ = endsInCr;
        if (isMixed_) {
            findings_.warning("mixed-line-ends", line_.place,
                fmt::format(
                    "the line ends with {}, unlike the lines before", endsInCr ? "CR LF" : "LF alone"),
                "look whether a character was lost, and let all lines end alike");
        }
    }

    Findings& findings_;
    RawLine line_;
    std::optional<bool> endsInCr_; ///< the lines so far
    bool isMixed_ = false;
    const std::function<void(const RawLine&)>& each_;
    format::CLineCutter lines_;
};

} // namespace

std::string Context::pathOf(std::string_view file) const
{
    return nativePath(root, file);
}

void reportUnended(Context& context, const RawLine& line)
{
    if (line.endsFile && !line.isCut && !line.bytes.empty() && line.bytes != format::utf8Mark) {
        context.findings.warning("no-line-end", line.place, "no line end follows: the file may have been cut",
            "look whether the file is whole, and end it with a line end");
    }
}

bool readLines(Context& context, const std::string& file, const std::function<void(const RawLine&)>& each)
{
    ++context.files;
    const InputFile input(context.pathOf(file));
    if (!input.isOpen()) {
        context.findings.error("cannot-open", { file }, "the file cannot be opened",
            "give the right to read it, or remove a link that leads nowhere");
        return false;
    }
    if (!input.isPlain()) {
        context.findings.error(
            "cannot-read", { file }, "it is no file to read from", "replace it by a plain file");
        return false;
    }
    return LineReader(context, file, each).read(input);
}

} // namespace tool::check
