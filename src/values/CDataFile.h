#pragma once

#include "files/CLineReader.h"
#include "files/CLog.h"
#include "format/descriptor.h"
#include "format/paths.h"

#include <span>
#include <string>
#include <string_view>

namespace values {

/// Reports that a data file is missing; returns the code for it.
int reportMissing(const CLog& log, std::string_view path);

/// A data file being read line by line.
class CDataFile {
public:
    /// `path` and `log` must outlive the object.
    CDataFile(const CLog& log, const std::string& path);

    /// 0, or after reporting it: -3 when nothing stands at the path, -6 when it cannot be opened.
    int checkOpen() const;

    /// Goes to the next line. 0, or -7 after reporting that the file cannot be read.
    int next();

    /// Reads exactly as many numbers as the span has from the line when it is in the plain form. False says
    /// nothing about the line.
    bool parsePlainRow(std::span<double> numbers) const noexcept;

    /// The decoded line, valid until next().
    std::string_view text();

    /// True for a blank line and a comment.
    bool isSkipped();

    bool hitEnd() const noexcept { return lines_.hitEnd(); }

    // What the rest of the file may hold, to size arrays by.
    std::size_t linesBuffered() const noexcept { return lines_.linesBuffered(); }
    std::size_t bytesAhead() const noexcept { return lines_.bytesAhead(); }
    std::size_t bytesDelivered() const noexcept { return lines_.bytesDelivered(); }

    /// The path for the log.
    std::string shownPath() const { return format::shown(path_); }

private:
    const CLog& log_;
    const std::string& path_;
    qm::CQMInputFile file_;
    CLineReader lines_;
    bool plainRowsAllowed_; ///< bytes mean what they mean in ASCII
    bool isDecoded_ = false;
    std::string_view bytes_;
    std::string_view text_;
    format::CLineDecoder decoder_ { false }; // data files have no mark
};

} // namespace values
