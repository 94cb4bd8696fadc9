#pragma once

#include "qm/CQMInputFile.h"
#include "qm/text.h"

#include <array>
#include <string_view>

/// Cuts a file into lines as the database's files define them: the bytes up to the next LF, at most
/// 1022. Decoding, the cut at a NUL and the CR at the end are the caller's.
class CLineReader {
public:
    static constexpr std::size_t maxLineLength = 1022;

    enum class Result {
        Line,
        TooLong, ///< the line's first 1022 bytes are delivered; reading must end here
        Failed, ///< the file could not be read
    };

    /// `regularFile`: the file is known to be one, so that a short read marks its end.
    CLineReader(qm::CQMInputFile& file, bool regularFile) noexcept
        : file_(file)
        , regularFile_(regularFile)
    {
    }

    /// Delivers the next line, valid until the next call. After a last LF comes one empty line.
    Result next(std::string_view& line) noexcept;

    /// True when the line was ended by the file, not by an LF: there is none after it.
    bool hitEnd() const noexcept { return hitEnd_; }

    /// True when the rest of the file has been read, and is plain ASCII without a NUL.
    bool isRestPlain() const noexcept
    {
        return ended_ && qm::text::isPlain({ buffer_.data() + begin_, end_ - begin_ });
    }

    /// Most lines of so many bytes or more that are still to come; an estimate to size arrays by. The line
    /// that was delivered last is not valid any more.
    std::size_t linesAhead(std::size_t minLength) noexcept;

private:
    bool fill() noexcept;

    qm::CQMInputFile& file_;
    bool regularFile_;
    bool ended_ = false; ///< the file has no more bytes
    bool hitEnd_ = false;
    std::size_t begin_ = 0;
    std::size_t end_ = 0;
    std::array<char, 32768> buffer_;
};
