#include "files/CLineReader.h"

#include <algorithm>
#include <cstring>

CLineReader::Result CLineReader::next(std::string_view& line) noexcept
{
    for (;;) {
        const std::string_view ahead(buffer_.data() + begin_, end_ - begin_);
        const std::size_t length = ahead.find('\n');
        if (std::min(length, ahead.size()) > maxLineLength) {
            line = ahead.substr(0, maxLineLength);
            return Result::TooLong;
        }
        if (length != std::string_view::npos) {
            line = ahead.substr(0, length);
            begin_ += length + 1;
            return Result::Line;
        }
        if (ended_) {
            line = ahead;
            begin_ = end_;
            hitEnd_ = true;
            return Result::Line;
        }
        if (!fill()) {
            return Result::Failed;
        }
    }
}

std::size_t CLineReader::linesAhead(std::size_t minLength) noexcept
{
    while (!ended_ && end_ - begin_ < buffer_.size()) {
        if (!fill()) {
            return 0; // next() meets the failure again and reports it
        }
    }
    const std::string_view ahead(buffer_.data() + begin_, end_ - begin_);
    const qm::RestOfFile rest = ended_ ? qm::RestOfFile() : file_.measureRest();
    const std::size_t lines = qm::countLineEnds(ahead) + rest.lineEnds + 1;
    return std::min(lines, (ahead.size() + rest.bytes) / (minLength + 1) + 1);
}

/// Reads on, behind what is left of the buffer; false when that fails.
bool CLineReader::fill() noexcept
{
    std::memmove(buffer_.data(), buffer_.data() + begin_, end_ - begin_);
    end_ -= begin_;
    begin_ = 0;
    const std::size_t room = buffer_.size() - end_;
    const ssize_t count = file_.read(buffer_.data() + end_, room);
    if (count < 0) {
        return false;
    }
    end_ += static_cast<std::size_t>(count);
    ended_ = count == 0 || (regularFile_ && static_cast<std::size_t>(count) < room);
    return true;
}
