#pragma once

#include "format/vocabulary.h"

#include <array>
#include <cstddef>
#include <span>
#include <string_view>

namespace format {

/// Cuts the bytes of a file into lines: up to the next LF, at most maxLineLength bytes. Decoding, the cut
/// at a NUL and the CR at the end are not its business.
///
/// The bytes come in pieces of any size: whenever next() asks for more, copy some to room() and say with
/// received() how many there are, 0 for the end of the file. Or they are all there already.
class CLineCutter {
public:
    CLineCutter() = default;
    /// Cuts the bytes of a whole file, which must outlive the object.
    explicit CLineCutter(std::string_view whole) noexcept
        : ended_(true)
        , end_(whole.size())
        , bytes_(whole.data())
    {
    }
    CLineCutter(const CLineCutter&) = delete;
    CLineCutter& operator=(const CLineCutter&) = delete;

    enum class Result {
        Line,
        TooLong, ///< the line's first maxLineLength bytes are delivered; cutting must end here
        NeedBytes,
    };

    /// Delivers the next line, valid until room() is called. After a last LF comes one empty line.
    Result next(std::string_view& line) noexcept
    {
        const std::string_view bytes = ahead();
        const std::size_t length = bytes.find('\n');
        if (length > maxLineLength) {
            return nextWithoutEnd(line);
        }
        line = bytes.substr(0, length);
        begin_ += length + 1;
        return Result::Line;
    }

    /// Where to copy bytes to; never empty after next() has asked for them.
    std::span<char> room() noexcept;
    void received(std::size_t count) noexcept;

    /// True when the last line was ended by the file, not by an LF: there is none after it.
    bool hitEnd() const noexcept { return hitEnd_; }

    /// The bytes received that no line has been cut from.
    std::string_view ahead() const noexcept { return { bytes_ + begin_, end_ - begin_ }; }

private:
    /// The same where no LF is as near as it must be.
    Result nextWithoutEnd(std::string_view& line) noexcept;

    bool ended_ = false; ///< the file has no more bytes
    bool hitEnd_ = false;
    std::size_t begin_ = 0;
    std::size_t end_ = 0;
    std::array<char, 32768> buffer_;
    const char* bytes_ = buffer_.data();
};

} // namespace format
