#include "output/Output.h"

#include "common/encodings.h"
#include "common/failure.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <unistd.h>

namespace tool {

namespace {

constexpr std::size_t pieceSize = 64 * 1024;

bool wantsColour(std::FILE* file)
{
    const char* noColour = std::getenv("NO_COLOR");
    const char* terminal = std::getenv("TERM");
    return ::isatty(::fileno(file)) && !(noColour && *noColour) && terminal
        && std::string_view(terminal) != "dumb";
}

std::FILE* open(const std::string& name)
{
    std::FILE* file = std::fopen(toLocale(name).c_str(), "wbe");
    if (!file) {
        throw Failure("cannot write \"{}\": {}", name, std::strerror(errno));
    }
    return file;
}

} // namespace

Output::Output(const std::string& file)
    : name_(file)
    , file_(file.empty() ? stdout : open(file))
    , coloured_(wantsColour(file_))
{
}

Output::~Output()
{
    if (file_ != stdout) {
        std::fclose(file_);
    }
}

void Output::write(std::string_view text)
{
    pending_ += text;
    if (pending_.size() >= pieceSize) {
        finish();
    }
}

std::string Output::styled(const fmt::text_style& style, std::string_view text) const
{
    return coloured_ ? fmt::format(style, "{}", text) : std::string(text);
}

void Output::finish()
{
    const bool written = std::fwrite(pending_.data(), 1, pending_.size(), file_) == pending_.size();
    pending_.clear();
    if (written && std::fflush(file_) == 0) {
        return;
    }
    if (errno == EPIPE) {
        throw ClosedPipe();
    }
    throw Failure("cannot write {}: {}", name_.empty() ? "standard output" : name_, std::strerror(errno));
}

} // namespace tool
