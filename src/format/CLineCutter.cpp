#include "format/CLineCutter.h"

#include "format/vocabulary.h"

#include <algorithm>
#include <cstring>

namespace format {

CLineCutter::Result CLineCutter::next(std::string_view& line) noexcept
{
    const std::string_view bytes = ahead();
    const std::size_t length = bytes.find('\n');
    if (std::min(length, bytes.size()) > maxLineLength) {
        line = bytes.substr(0, maxLineLength);
        return Result::TooLong;
    }
    if (length != std::string_view::npos) {
        line = bytes.substr(0, length);
        begin_ += length + 1;
        return Result::Line;
    }
    if (!ended_) {
        return Result::NeedBytes;
    }
    line = bytes;
    begin_ = end_;
    hitEnd_ = true;
    return Result::Line;
}

std::span<char> CLineCutter::room() noexcept
{
    std::memmove(buffer_.data(), buffer_.data() + begin_, end_ - begin_);
    end_ -= begin_;
    begin_ = 0;
    return std::span(buffer_).subspan(end_);
}

void CLineCutter::received(std::size_t count) noexcept
{
    end_ += count;
    ended_ = count == 0;
}

} // namespace format
