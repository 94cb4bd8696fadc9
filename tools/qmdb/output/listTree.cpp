#include "output/listTree.h"

#include "common/characters.h"
#include "common/names.h"
#include "common/numbers.h"
#include "output/columns.h"
#include "output/referredNames.h"

#include <array>

namespace tool {

namespace {

constexpr std::size_t branchWidth = 3; ///< of each level of the drawing in front

/// A text that knows its width, which is asked for more than once.
struct Cell {
    Cell(std::string text)
        : text(std::move(text))
        , width(displayWidth(this->text))
    {
    }
    Cell(std::string text, std::size_t width)
        : text(std::move(text))
        , width(width)
    {
    }

    std::string text;
    std::size_t width;
};

/// A line of the tree: what stands at its branch, and for a parameter the columns behind it.
struct Line {
    Cell branch; ///< the drawing in front
    Cell text;
    std::vector<Cell> columns;
    std::string error;
};

std::string rangeText(const ListedParameter& listed)
{
    std::string text;
    for (std::size_t i = 0; i < listed.ranges.size(); ++i) {
        const ArgumentNotes& argument = listed.notes.arguments[i]; // as many as a value that can be read has
        text += fmt::format("{}{} {} to {}{}{}", i == 0 ? "" : ", ", printable(argument.symbol),
            numberText(listed.ranges[i].least), numberText(listed.ranges[i].most),
            argument.units.empty() ? "" : " ", printable(argument.units));
    }
    return text;
}

std::vector<Cell> valueColumns(const ListedParameter& listed)
{
    const Parameter& parameter = listed.parameter;
    std::vector<Cell> columns { typeText(parameter.type),
        std::string(parameter.vector ? "vector" : "scalar") };
    if (listed.error.empty()) {
        const std::string points = listed.isRead
            ? fmt::format("{} {}", listed.points, listed.points == 1 ? "point" : "points")
            : "";
        columns.insert(columns.end(), { points, parameter.units, rangeText(listed) });
    }
    return columns;
}

std::vector<Cell> sourceColumns(const ListedParameter& listed)
{
    const std::string source = sourceText(listed.notes);
    return { source.empty() ? std::string("no source is given") : source };
}

Line parameterLine(Cell branch, const ListedParameter& listed, TreeColumns columns)
{
    return { std::move(branch), label(listed.parameter.name, listed.parameter.id),
        columns == TreeColumns::Sources ? sourceColumns(listed) : valueColumns(listed), listed.error };
}

std::string substanceText(const ListedSubstance& listed, const std::vector<Substance>& all)
{
    const Substance& substance = listed.substance;
    const std::string parts = compositionText(substance, all);
    std::string text = (listed.notes.formula.empty() ? "" : ", ") + printable(listed.notes.formula);
    if (substance.mixture > 0) {
        text += fmt::format(", mixture{}{}", parts.empty() ? "" : " of ", parts);
    }
    return text + (substance.comment.empty() ? "" : ": ") + substance.comment;
}

std::string ownerLine(const Owner& owner, const ListedSubstance& substance)
{
    if (owner.kind == Owner::Kind::Phase) {
        return fmt::format("phase {}, {}", label(owner.name, owner.id), stateText(owner.state));
    }
    std::vector<Owner> phases;
    for (const ListedOwner& listed : substance.owners) {
        if (listed.owner.kind == Owner::Kind::Phase) {
            phases.push_back(listed.owner);
        }
    }
    return fmt::format("change {}, {} to {}", label(owner.name, owner.id), nameById(owner.phase1, phases),
        nameById(owner.phase2, phases));
}

void appendOwner(
    std::vector<Line>& lines, const ListedSubstance& substance, std::size_t index, TreeColumns columns)
{
    const ListedOwner& listed = substance.owners[index];
    const bool self = listed.owner.kind == Owner::Kind::Substance;
    const bool lastOwner = index + 1 == substance.owners.size();
    if (!self) {
        lines.push_back(
            { { lastOwner ? "└─ " : "├─ ", branchWidth }, ownerLine(listed.owner, substance), {}, {} });
    }
    const std::string trunk = self ? "" : lastOwner ? "   " : "│  ";
    for (std::size_t i = 0; i < listed.parameters.size(); ++i) {
        const bool last = i + 1 == listed.parameters.size() && (!self || lastOwner);
        const Cell branch(trunk + (last ? "└─ " : "├─ "), self ? branchWidth : 2 * branchWidth);
        lines.push_back(parameterLine(branch, listed.parameters[i], columns));
    }
}

std::vector<Line> linesOf(const ListedSubstance& listed, TreeColumns columns)
{
    std::vector<Line> lines;
    for (std::size_t i = 0; i < listed.owners.size(); ++i) {
        appendOwner(lines, listed, i, columns);
    }
    return lines;
}

/// Widths of the text with its branch and of each column behind it.
std::array<std::size_t, 6> widthsOf(const std::vector<std::vector<Line>>& trees)
{
    std::array<std::size_t, 6> widths {};
    for (const auto& lines : trees) {
        for (const Line& line : lines) {
            if (!line.columns.empty()) {
                widths[0] = std::max(widths[0], line.branch.width + line.text.width);
            }
            for (std::size_t i = 0; i < line.columns.size(); ++i) {
                widths[i + 1] = std::max(widths[i + 1], line.columns[i].width);
            }
        }
    }
    return widths;
}

void append(std::string& text, const Cell& cell, std::size_t width, bool endsThere = false)
{
    text.append(endsThere ? width - cell.width : 0, ' ');
    text += cell.text;
    text.append(endsThere ? 0 : width - cell.width, ' ');
}

void printLine(Output& output, const Line& line, const std::array<std::size_t, 6>& widths)
{
    std::string columns;
    for (std::size_t i = 0; i < line.columns.size(); ++i) {
        constexpr std::size_t points = 2; // numbers end in one column
        columns += "  ";
        append(columns, line.columns[i], widths[i + 1], i == points);
    }
    if (!line.error.empty()) {
        columns += "  " + output.styled(fmt::fg(fmt::terminal_color::red), line.error);
    }
    columns.erase(columns.find_last_not_of(' ') + 1);
    std::string text;
    append(text, line.text, columns.empty() ? line.text.width : widths[0] - line.branch.width);
    output.print("{}{}{}\n", output.styled(fmt::emphasis::faint, line.branch.text), text, columns);
}

} // namespace

void printTree(Output& output, const std::vector<ListedSubstance>& listed, const std::vector<Substance>& all,
    TreeColumns columns)
{
    std::vector<std::vector<Line>> trees;
    trees.reserve(listed.size());
    for (const ListedSubstance& substance : listed) {
        trees.push_back(linesOf(substance, columns));
    }
    const auto widths = widthsOf(trees);
    for (std::size_t i = 0; i < listed.size(); ++i) {
        const Substance& substance = listed[i].substance;
        output.print("{}{}{}\n", i == 0 ? "" : "\n",
            output.styled(fmt::emphasis::bold, label(substance.name, substance.id)),
            substanceText(listed[i], all));
        for (const Line& line : trees[i]) {
            printLine(output, line, widths);
        }
    }
}

} // namespace tool
