#include "help/HelpFormatter.h"

#include "help/prose.h"

#include <fmt/format.h>
#include <sstream>

namespace tool {

namespace {

constexpr std::size_t lineWidth = 80;

/// Breaks the lines of paragraphs. The text is ASCII.
std::string wrapped(std::string_view text, std::string_view indent)
{
    std::string result;
    std::istringstream paragraphs { std::string(text) };
    for (std::string paragraph; std::getline(paragraphs, paragraph);) {
        std::string line;
        std::istringstream words(paragraph);
        for (std::string word; words >> word;) {
            if (!line.empty() && indent.size() + line.size() + 1 + word.size() > lineWidth) {
                result += fmt::format("{}{}\n", indent, line);
                line.clear();
            }
            line += (line.empty() ? "" : " ") + word;
        }
        result += line.empty() ? "\n" : fmt::format("{}{}\n", indent, line);
    }
    return result;
}

} // namespace

std::string HelpFormatter::make_description(const CLI::App* app) const
{
    const bool group = app->get_name().empty();
    const std::string_view prose = group ? "" : proseOf(commandName(*app));
    const std::string plain = CLI::Formatter::make_description(app);
    return prose.empty() ? plain : fmt::format("{}\n{}\n", plain, wrapped(prose, ""));
}

std::string HelpFormatter::make_footer(const CLI::App* app) const
{
    std::string footer;
    if (!app->get_parent()) {
        for (const ManualSection& section : manualSections()) {
            footer += fmt::format("{}:\n{}\n", section.title, wrapped(section.text, "  "));
        }
    }
    return footer + CLI::Formatter::make_footer(app);
}

std::string HelpFormatter::make_positionals(const CLI::App* app) const
{
    std::stringstream out;
    for (const CLI::Option* option :
        app->get_options([](const auto* each) { return each->get_positional(); })) {
        out << (out.tellp() == 0 ? "\nPositionals:\n" : "");
        CLI::detail::format_help(
            out, option->get_name(true, false), option->get_description(), column_width_);
    }
    return out.str();
}

} // namespace tool
