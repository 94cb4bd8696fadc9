#include "output/gnuplotScript.h"

#include "common/failure.h"

#include <filesystem>
#include <fmt/ranges.h>
#include <sys/ioctl.h>
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

} // namespace

std::string gnuplotScript(const Picture& picture, const std::string& file)
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

} // namespace tool
