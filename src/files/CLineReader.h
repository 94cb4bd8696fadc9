#pragma once

#include "format/CLineCutter.h"
#include "qm/CQMInputFile.h"

#include <cstddef>
#include <string_view>

/// Reads the lines of a file. Decoding, the cut at a NUL and the CR at the end are the caller's.
class CLineReader {
public:
    enum class Result {
        Line,
        TooLong, ///< what fits of the line is delivered; reading must end here
        Failed, ///< the file could not be read
    };

    explicit CLineReader(qm::CQMInputFile& file) noexcept
        : file_(&file)
    {
    }
    /// Reads the lines of a file whose bytes are given instead, and must outlive the object.
    explicit CLineReader(std::string_view bytes) noexcept
        : read_(bytes.size())
        , cutter_(bytes)
    {
    }

    /// Delivers the next line, valid until the next call. After a last LF comes one empty line.
    Result next(std::string_view& line) noexcept
    {
        for (;;) {
            switch (cutter_.next(line)) {
            case format::CLineCutter::Result::Line:
                return Result::Line;
            case format::CLineCutter::Result::TooLong:
                return Result::TooLong;
            case format::CLineCutter::Result::NeedBytes:
                break;
            }
            if (!readAhead()) {
                return Result::Failed;
            }
        }
    }

    /// True when the line was ended by the file, not by an LF: there is none after it.
    bool hitEnd() const noexcept { return cutter_.hitEnd(); }

    /// Bytes of the file that no line has been delivered from; 0 when that is not known, as of a device,
    /// which may have no end.
    std::size_t bytesAhead() const noexcept;
    /// About as many lines as have been read ahead.
    std::size_t linesBuffered() const noexcept;
    /// Bytes of the lines delivered.
    std::size_t bytesDelivered() const noexcept { return read_ - cutter_.ahead().size(); }

private:
    bool readAhead() noexcept;

    qm::CQMInputFile* file_ = nullptr; ///< null when all has been read
    std::size_t read_ = 0;
    format::CLineCutter cutter_;
};
