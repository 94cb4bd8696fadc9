#include "files/CLineReader.h"

#include <algorithm>

bool CLineReader::readAhead() noexcept
{
    const ssize_t count = file_->read(cutter_.room());
    if (count < 0) {
        return false;
    }
    read_ += static_cast<std::size_t>(count);
    cutter_.received(static_cast<std::size_t>(count));
    return true;
}

std::size_t CLineReader::bytesAhead() const noexcept
{
    const std::size_t size = file_->size();
    const std::size_t delivered = bytesDelivered();
    return size > delivered ? size - delivered : 0;
}

std::size_t CLineReader::linesBuffered() const noexcept
{
    constexpr std::size_t sampled = 2048; // small files whole; more would show in the time of large ones
    const std::string_view ahead = cutter_.ahead();
    const std::string_view sample = ahead.substr(0, sampled);
    const auto lines = static_cast<std::size_t>(std::ranges::count(sample, '\n'));
    return sample.size() == ahead.size() ? lines : lines * (ahead.size() + sampled / 16) / sampled;
}
