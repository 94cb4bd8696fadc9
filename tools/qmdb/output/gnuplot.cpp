#include "output/gnuplot.h"

#include "common/failure.h"
#include "output/Output.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fmt/ranges.h>
#include <spawn.h>
#include <sstream>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tool {

namespace {

constexpr std::size_t fewDots = 60; ///< up to so many, the dots of a curve are marked

/// A text for gnuplot. Nothing but the quote is special between single quotes.
std::string plotText(std::string_view text)
{
    std::string literal = "'";
    for (const char character : text) {
        const bool control = static_cast<unsigned char>(character) < ' ';
        literal += character == '\'' ? "''" : std::string(1, control ? ' ' : character);
    }
    return literal + "'";
}

/// The terminal's size less one line for the prompt.
std::string terminalSize()
{
    winsize size {};
    const bool known = ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 && size.ws_row > 1;
    return known ? fmt::format("{},{}", size.ws_col, size.ws_row - 1) : "79,24";
}

std::string terminalFor(const std::string& file)
{
    const std::string extension = std::filesystem::path(file).extension();
    if (file.empty()) {
        return fmt::format("dumb noenhanced size {}", terminalSize());
    }
    if (extension == ".svg") {
        return "svg noenhanced size 900,600 font 'sans,14' background 'white'";
    }
    if (extension == ".png") {
        return "pngcairo noenhanced size 1200,800 font 'sans,13'";
    }
    if (extension == ".pdf") {
        return "pdfcairo noenhanced size 20cm,13.5cm font 'sans,12'";
    }
    throw Failure("\"{}\": pictures are files with the extension .svg, .png or .pdf", file);
}

/// One data block for each curve, named $C0, $C1 and so on.
std::string dataBlocks(const Picture& picture)
{
    std::string script;
    for (std::size_t i = 0; i < picture.curves.size(); ++i) {
        script += fmt::format("$C{} << END\n", i);
        for (const Curve::Dot& dot : picture.curves[i].dots) {
            script += fmt::format("{} {}\n", dot.x, dot.y);
        }
        script += "END\n";
    }
    return script;
}

/// A family runs through a scale of colours; other curves get well-told-apart ones.
std::string strokeOf(const Picture& picture, std::size_t index)
{
    if (picture.family && picture.curves.size() > 1) {
        const double share = static_cast<double>(index) / static_cast<double>(picture.curves.size() - 1);
        return fmt::format("linecolor palette frac {:.3f}", share);
    }
    return fmt::format("linetype {} dashtype {}", index + 1, picture.curves[index].dash + 1);
}

std::string plotLine(const Picture& picture, bool withDots)
{
    std::vector<std::string> parts;
    for (std::size_t i = 0; i < picture.curves.size(); ++i) {
        const Curve& curve = picture.curves[i];
        const bool marked = withDots && curve.dots.size() <= fewDots;
        parts.push_back(fmt::format("$C{} using 1:2 with {} {} linewidth 2 title {}", i,
            marked ? "linespoints pointtype 7 pointsize 0.6" : "lines", strokeOf(picture, i),
            plotText(curve.title)));
    }
    return fmt::format("plot {}\n", fmt::join(parts, ", "));
}

std::string keyLine(const Picture& picture, bool inFile)
{
    if (picture.curves.size() == 1 && picture.curves.front().title.empty()) {
        return "unset key\n";
    }
    return inFile ? "set key outside right top Left reverse samplen 2\n" : "set key below\n";
}

/// Titles, labels and style. A terminal has no room for a label beside the axis, nor for a grid.
std::string frame(const Picture& picture, const std::string& file)
{
    const std::string xLabel = fmt::format("set xlabel {}\n", plotText(picture.xLabel));
    if (file.empty()) {
        return xLabel + fmt::format("set title {}\n", plotText(picture.title + ": " + picture.yLabel));
    }
    return xLabel
        + fmt::format("set title {}\nset ylabel {}\n"
                      "set grid linecolor rgb '#dddddd' linetype 1 linewidth 0.5\n"
                      "set border 3\n"
                      "set tics nomirror\n",
            plotText(picture.title), plotText(picture.yLabel));
}

std::string script(const Picture& picture, const std::string& file)
{
    return fmt::format(
        "set encoding utf8\n"
        "set terminal {}\n"
        "set colorsequence podo\n"
        "set palette defined (0 '#440154', 1 '#3b528b', 2 '#21918c', 3 '#5ec962', 4 '#b5b800')\n"
        "unset colorbox\n"
        "{}{}{}{}",
        terminalFor(file), frame(picture, file), keyLine(picture, !file.empty()), dataBlocks(picture),
        plotLine(picture, !file.empty()));
}

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
    const std::string text = script(picture, file);
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
