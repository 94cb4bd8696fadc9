#pragma once

#include "files/CLineReader.h"
#include "files/CLog.h"

#include <span>
#include <string>
#include <string_view>

namespace values {

/// Says that a data file is missing; returns the code for it.
int tellMissing(const CLog& log, std::string_view path);

/// A data file being read line by line.
class CDataFile {
public:
    /// `path` and `log` must outlive the object.
    CDataFile(const CLog& log, const std::string& path);

    /// 0, or after saying so: -3 when nothing stands at the path, -6 when it cannot be opened.
    int checkOpen() const;

    /// Goes to the next line. 0, or -7 after saying that the file cannot be read.
    int next();

    /// Reads exactly as many numbers as the span has from the line when all of them are in the plain
    /// form and single runs of blanks separate them. False says nothing about the line.
    bool readPlainNumbers(std::span<double> numbers) const noexcept;

    /// The decoded line, valid until next().
    std::string_view text();

    /// True for a blank line and a comment.
    bool isSkipped();

    bool hitEnd() const noexcept { return lines_.hitEnd(); }

    /// Most lines of so many bytes or more that are still to come; an estimate to size arrays by. Ends the
    /// current line.
    std::size_t linesAhead(std::size_t minLength) noexcept { return lines_.linesAhead(minLength); }

    const std::string& path() const noexcept { return path_; }

private:
    const CLog& log_;
    const std::string& path_;
    qm::CQMInputFile file_;
    CLineReader lines_;
    bool plainNumbersAllowed_;
    bool isDecoded_ = false;
    std::string_view bytes_;
    std::string_view text_;
    std::string decoded_;
};

} // namespace values
