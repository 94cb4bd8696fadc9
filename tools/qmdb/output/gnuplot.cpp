#include "output/gnuplot.h"

#include "common/failure.h"
#include "output/Output.h"
#include "output/gnuplotScript.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <spawn.h>
#include <sstream>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tool {

namespace {

/// A file in memory, for what goes to gnuplot and for what it complains about.
class MemoryFile {
public:
    explicit MemoryFile(std::string_view text = {})
        : descriptor_(::memfd_create("qmdb", MFD_CLOEXEC))
    {
        const auto size = static_cast<ssize_t>(text.size());
        if (descriptor_ < 0 || ::pwrite(descriptor_, text.data(), text.size(), 0) != size) {
            throw Failure("cannot start gnuplot: {}", std::strerror(errno));
        }
    }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;
    ~MemoryFile() { ::close(descriptor_); }

    int descriptor() const noexcept { return descriptor_; }

    std::string content() const
    {
        std::string text(
            static_cast<std::size_t>(std::max<off_t>(::lseek(descriptor_, 0, SEEK_END), 0)), '\0');
        const ssize_t size = ::pread(descriptor_, text.data(), text.size(), 0);
        text.resize(static_cast<std::size_t>(std::max<ssize_t>(size, 0)));
        return text;
    }

private:
    int descriptor_;
};

/// Runs gnuplot on a script and returns how it ended. Its output goes to `output`.
int runGnuplot(const MemoryFile& input, int output, const MemoryFile& errors)
{
    ::setenv("LC_ALL", "C.UTF-8", 1);
    std::string words[] = { "gnuplot", "--default-settings", "-" };
    char* arguments[] = { words[0].data(), words[1].data(), words[2].data(), nullptr };
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_adddup2(&actions, input.descriptor(), STDIN_FILENO);
    ::posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
    ::posix_spawn_file_actions_adddup2(&actions, errors.descriptor(), STDERR_FILENO);
    pid_t child = 0;
    const int error = ::posix_spawnp(&child, arguments[0], &actions, nullptr, arguments, environ);
    ::posix_spawn_file_actions_destroy(&actions);
    if (error == ENOENT) {
        throw Failure("gnuplot is not installed; on Debian: apt-get install gnuplot-nox");
    }
    if (error != 0) {
        throw Failure("cannot start gnuplot: {}", std::strerror(error));
    }
    int result = 0;
    while (::waitpid(child, &result, 0) < 0 && errno == EINTR) { }
    return result;
}

/// The last line that gnuplot wrote, which says what is wrong; warnings stand before it.
std::string complaintOf(const MemoryFile& errors)
{
    std::string complaint;
    std::istringstream lines(errors.content());
    for (std::string line; std::getline(lines, line);) {
        const std::size_t first = line.find_first_not_of(" ^");
        complaint = first == std::string::npos ? complaint : line.substr(first);
    }
    return complaint;
}

/// The drawing without the form feed and the empty lines around it.
std::string_view trimmed(std::string_view drawing)
{
    const std::size_t begin = drawing.find_first_not_of("\f\n ");
    const std::size_t end = drawing.find_last_not_of("\f\n ");
    const std::size_t line = begin == drawing.npos ? 0 : drawing.rfind('\n', begin) + 1;
    return drawing.substr(line, end + 1 - line);
}

void drawTo(int output, const std::string& text)
{
    const MemoryFile errors;
    const int result = runGnuplot(MemoryFile(text), output, errors);
    if (result != 0) {
        const std::string complaint = complaintOf(errors);
        throw Failure("gnuplot could not draw the picture{}{}", complaint.empty() ? "" : ": ", complaint);
    }
}

} // namespace

void draw(const Picture& picture, const std::string& file)
{
    const std::string text = gnuplotScript(picture, file);
    if (file.empty()) {
        const MemoryFile drawing;
        drawTo(drawing.descriptor(), text);
        Output output;
        output.print("{}\n", trimmed(drawing.content()));
        output.finish();
        return;
    }
    OutputFile target(file, OutputFile::Existing::Replace);
    drawTo(target.descriptor(), text);
    target.moveIntoPlace();
}

} // namespace tool
