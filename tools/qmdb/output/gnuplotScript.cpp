#include "output/gnuplotScript.h"

#include "common/failure.h"
#include "output/legend.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fmt/ranges.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace tool {

namespace {

constexpr std::size_t fewDots = 60; ///< up to so many, the dots of a curve are marked
constexpr std::size_t marksOfManyDots = 20; ///< on longer curves whose colour another one has
constexpr std::size_t colours = 8;
constexpr std::array markers { 7, 5, 9, 11, 13, 15, 6, 4 };
constexpr double pixelsPerCentimetre = 96 / 2.54;
constexpr double linesBelowAxis = 3.8; ///< of text: its numbers and its label
constexpr double linesOfTitle = 1.4; ///< in the legend

enum class Medium { Terminal, Svg, Png, Pdf, Window };

Medium mediumOf(const std::string& file)
{
    const std::string extension = std::filesystem::path(file).extension();
    if (file.empty()) {
        return Medium::Terminal;
    }
    if (extension == ".svg") {
        return Medium::Svg;
    }
    if (extension == ".png") {
        return Medium::Png;
    }
    if (extension == ".pdf") {
        return Medium::Pdf;
    }
    throw Failure("\"{}\": pictures are files with the extension .svg, .png or .pdf", file);
}

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

/// The height of the texts in pixels.
unsigned fontSize(const Picture& picture)
{
    return std::clamp(picture.size.height / 45, 8u, 28u);
}

/// Font sizes are pixels in SVG, else points.
unsigned inFontUnits(unsigned pixels, Medium medium)
{
    return medium == Medium::Svg ? pixels : pixels * 3 / 4;
}

std::string terminalLine(const Picture& picture, Medium medium)
{
    const auto [width, height] = picture.size;
    const unsigned font = fontSize(picture);
    switch (medium) {
    case Medium::Terminal:
        return fmt::format("set terminal dumb noenhanced size {}\n", terminalSize());
    case Medium::Svg:
        return fmt::format("set terminal svg noenhanced size {},{} font 'sans,{}' background 'white'\n",
            width, height, font);
    case Medium::Png:
        return fmt::format("set terminal pngcairo noenhanced size {},{} font 'sans,{}' linewidth 1.3\n",
            width, height, inFontUnits(font, medium));
    case Medium::Pdf:
        return fmt::format("set terminal pdfcairo noenhanced size {:.2f}cm,{:.2f}cm font 'sans,{}' fontscale "
                           "0.7 linewidth 2\n",
            width / pixelsPerCentimetre, height / pixelsPerCentimetre, inFontUnits(font, medium));
    case Medium::Window:
        break;
    }
    return "# For a file: set terminal svg noenhanced; set output 'picture.svg'\n";
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
std::string strokeOf(const Picture& picture, const Legend& legend, std::size_t index)
{
    const Curve& curve = picture.curves[index];
    if (legend.kind == Legend::Kind::ColourScale) {
        return fmt::format("linecolor palette cb {}", curve.parameter);
    }
    if (picture.isFamily && picture.curves.size() > 1) {
        const double share = static_cast<double>(index) / static_cast<double>(picture.curves.size() - 1);
        return fmt::format("linecolor palette frac {:.3f}", share);
    }
    constexpr std::size_t dashOfLevels = 3;
    return fmt::format(
        "linetype {} dashtype {}", index % colours + 1, (curve.isLevel ? dashOfLevels : curve.dash) + 1);
}

/// Dots are marked where they are few, and wherever only marks tell curves of one colour apart.
std::string marksOf(const Picture& picture, std::size_t index)
{
    const Curve& curve = picture.curves[index];
    const bool isFew = curve.dots.size() <= fewDots;
    const bool repeatsColours = picture.curves.size() > colours && !picture.isFamily;
    if (curve.isLevel || (!isFew && !repeatsColours)) {
        return "lines";
    }
    const std::string interval
        = isFew ? "" : fmt::format(" pointinterval {}", curve.dots.size() / marksOfManyDots);
    return fmt::format(
        "linespoints pointtype {} pointsize 0.7{}", markers[index / colours % markers.size()], interval);
}

/// Components of vectors often lie upon each other: those drawn first are wider.
double widthOf(const Picture& picture, std::size_t index)
{
    constexpr std::array widths { 5.0, 3.0, 1.5 };
    constexpr double usual = 2;
    const bool hasComponents
        = std::ranges::any_of(picture.curves, [](const Curve& curve) { return curve.dash > 0; });
    return hasComponents ? widths.at(picture.curves[index].dash) : usual;
}

std::string plotLine(const Picture& picture, const Legend& legend, bool withMarks)
{
    std::vector<std::string> parts;
    for (std::size_t i = 0; i < picture.curves.size(); ++i) {
        const bool titled = legend.kind == Legend::Kind::List && i < legend.shown;
        parts.push_back(fmt::format("$C{} using 1:2 with {} {} linewidth {} {}", i,
            withMarks ? marksOf(picture, i) : "lines", strokeOf(picture, legend, i), widthOf(picture, i),
            titled ? "title " + plotText(cutTitle(picture.curves[i].title, legend.titleLength)) : "notitle"));
    }
    return fmt::format("plot {}\n", fmt::join(parts, ", \\\n    "));
}

std::string colourScale(const Picture& picture)
{
    const auto [first, last] = std::ranges::minmax(picture.curves, {}, &Curve::parameter);
    const bool isLogarithmic = first.parameter > 0 && last.parameter > 100 * first.parameter;
    return fmt::format("unset key\nset cblabel {}\nset cbrange [{}:{}]\n{}", plotText(picture.familyLabel),
        first.parameter, last.parameter, isLogarithmic ? "set logscale cb\n" : "");
}

std::string legendLines(const Picture& picture, const Legend& legend, Medium medium)
{
    if (medium == Medium::Terminal) {
        return legend.kind == Legend::Kind::None ? "unset key\nunset colorbox\n"
                                                 : "set key below\nunset colorbox\n";
    }
    switch (legend.kind) {
    case Legend::Kind::None:
        return "unset key\nunset colorbox\n";
    case Legend::Kind::ColourScale:
        return colourScale(picture);
    case Legend::Kind::List:
        break;
    }
    // At the lower edge, under a margin that leaves room for it: "below" would let it meet the label of the
    // axis.
    const std::size_t rows = (legend.shown + legend.columns - 1) / legend.columns;
    return fmt::format(
        "set key at screen 0.5,0.01 bottom center horizontal Left reverse samplen 2 maxcols {} font ',{}'\n"
        "set bmargin {:.1f}\nunset colorbox\n",
        legend.columns, inFontUnits(legend.fontSize, medium),
        linesBelowAxis + static_cast<double>(rows) * linesOfTitle * legend.fontSize / fontSize(picture));
}

std::string axisLines(const Axis& axis, char name)
{
    return fmt::format("set {0}range [{1}:{2}]\n{3}", name, axis.range.least, axis.range.most,
        axis.isLogarithmic ? fmt::format("set logscale {0}\nset m{0}tics 10\n", name) : "");
}

/// Titles, labels and style. A terminal has no room for a label beside the axis, nor for a grid.
std::string frame(const Picture& picture, Medium medium)
{
    const std::string axes = axisLines(picture.x, 'x') + axisLines(picture.y, 'y')
        + fmt::format("set xlabel {}\n", plotText(picture.x.label));
    if (medium == Medium::Terminal) {
        const std::string units = picture.units.empty() ? "" : fmt::format(" [{}]", picture.units);
        return axes + fmt::format("set title {}\n", plotText(picture.title + units));
    }
    return axes + fmt::format("set title {}\n", plotText(picture.title))
        + fmt::format("set ylabel {}\n"
                      "set grid linecolor rgb '#dddddd' linetype 1 linewidth 0.5\n"
                      "set border 3\n"
                      "set tics nomirror\n",
            plotText(picture.y.label));
}

std::string commands(const Picture& picture, Medium medium, const std::string& outputLine)
{
    const bool inTerminal = medium == Medium::Terminal;
    const Legend legend = legendFor(picture, fontSize(picture));
    if (!inTerminal && legend.kind == Legend::Kind::List && legend.shown < picture.curves.size()) {
        fmt::print(stderr,
            "qmdb: note: the legend has room for {} of {} curves; draw fewer, or a larger picture\n",
            legend.shown, picture.curves.size());
    }
    return fmt::format(
        "set encoding utf8\n"
        "{}{}"
        "set format '%.6g'\n"
        "set colorsequence podo\n"
        "set palette defined (0 '#440154', 1 '#3b528b', 2 '#21918c', 3 '#5ec962', 4 '#b5b800')\n"
        "{}{}{}{}",
        terminalLine(picture, medium), outputLine, frame(picture, medium),
        legendLines(picture, legend, medium), dataBlocks(picture), plotLine(picture, legend, !inTerminal));
}

} // namespace

std::string gnuplotScript(const Picture& picture, const std::string& file)
{
    return commands(picture, mediumOf(file), "");
}

std::string gnuplotProgram(const Picture& picture, const std::string& file)
{
    if (file.empty()) {
        return "#!/usr/bin/gnuplot --persist\n" + commands(picture, Medium::Window, "");
    }
    return "#!/usr/bin/gnuplot\n"
        + commands(picture, mediumOf(file), fmt::format("set output {}\n", plotText(file)));
}

} // namespace tool
