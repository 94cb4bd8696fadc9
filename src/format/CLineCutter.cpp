#include "format/CLineCutter.h"

#include <cstring>

namespace format {

CLineCutter::Result CLineCutter::nextWithoutEnd(std::string_view& line) noexcept
{
    const std::string_view bytes = ahead();
    if (bytes.size() > maxLineLength) {
        line = bytes.substr(0, maxLineLength);
        return Result::TooLong;
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
