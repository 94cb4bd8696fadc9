#include "output/Output.h"

#include "common/failure.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace tool {

namespace {

constexpr std::size_t pieceSize = 65536;

bool wantsColour(std::FILE* file)
{
    const char* noColour = std::getenv("NO_COLOR");
    const char* terminal = std::getenv("TERM");
    return ::isatty(::fileno(file)) && !(noColour && *noColour) && terminal
        && std::string_view(terminal) != "dumb";
}

/// A stream on a file that is written; it is closed apart from it.
std::FILE* openStream(const OutputFile& file)
{
    const int copy = ::fcntl(file.descriptor(), F_DUPFD_CLOEXEC, 0);
    std::FILE* stream = copy < 0 ? nullptr : ::fdopen(copy, "wb");
    if (!stream) {
        throw Failure("cannot write the output: {}", std::strerror(errno));
    }
    return stream;
}

} // namespace

Output::Output(const std::string& file)
    : target_(file.empty() ? nullptr : std::make_unique<OutputFile>(file, OutputFile::Existing::Replace))
    , name_(file.empty() ? "standard output" : fmt::format("\"{}\"", file))
    , stream_(target_ ? openStream(*target_) : stdout)
    , coloured_(wantsColour(stream_))
{
}

Output::~Output()
{
    if (target_) {
        std::fclose(stream_);
    }
}

void Output::write(std::string_view text)
{
    pending_ += text;
    if (pending_.size() >= pieceSize) {
        flush();
    }
}

std::string Output::styled(const fmt::text_style& style, std::string_view text) const
{
    return coloured_ ? fmt::format(style, "{}", text) : std::string(text);
}

void Output::flush()
{
    const bool written = std::fwrite(pending_.data(), 1, pending_.size(), stream_) == pending_.size();
    pending_.clear();
    if (written && std::fflush(stream_) == 0) {
        return;
    }
    if (errno == EPIPE) {
        throw ClosedPipe();
    }
    throw Failure("cannot write {}: {}", name_, std::strerror(errno));
}

void Output::finish()
{
    flush();
    if (target_) {
        target_->moveIntoPlace();
    }
}

} // namespace tool
