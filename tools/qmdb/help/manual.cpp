#include "help/manual.h"

#include "common/failure.h"
#include "common/names.h"
#include "help/CommandLine.h"
#include "help/prose.h"

#include <algorithm>
#include <cctype>
#include <fmt/ranges.h>
#include <map>
#include <sstream>
#include <tuple>
#include <vector>

namespace tool {

namespace {

/// An option that this many commands explain alike is explained once.
constexpr std::size_t leastShared = 3;

using Options = std::vector<const CLI::Option*>;

std::string bold(std::string_view text)
{
    return fmt::format("\\fB{}\\fR", text);
}

std::string italic(std::string_view text)
{
    return fmt::format("\\fI{}\\fR", text);
}

/// Characters that man(7) takes for its own.
std::string escaped(std::string_view text)
{
    std::string result = text.starts_with('.') || text.starts_with('\'') ? "\\&" : "";
    for (const char character : text) {
        result += character == '\\' ? "\\e" : character == '-' ? "\\-" : std::string(1, character);
    }
    return result;
}

/// Prose with its options in bold, on lines of a length that people can compare.
std::string roffText(std::string_view text)
{
    constexpr std::size_t lineWidth = 110;
    constexpr std::string_view inOption = "abcdefghijklmnopqrstuvwxyz-";
    std::string result;
    std::size_t width = 0;
    std::istringstream words { std::string(text) };
    for (std::string word; words >> word;) {
        const std::size_t option = word.find("--");
        const std::size_t end = option == word.npos ? option : word.find_first_not_of(inOption, option);
        const bool fits = width + word.size() < lineWidth;
        result += width == 0 ? "" : fits ? " " : "\n";
        width = fits ? width + word.size() + 1 : word.size();
        result += option == word.npos
            ? escaped(word)
            : escaped(word.substr(0, option)) + bold(escaped(word.substr(option, end - option)))
                + (end == word.npos ? "" : escaped(word.substr(end)));
    }
    return result + "\n";
}

std::string paragraphs(std::string_view text)
{
    std::string result;
    std::istringstream lines { std::string(text) };
    for (std::string line; std::getline(lines, line);) {
        result += line.empty() ? ".PP\n" : roffText(line);
    }
    return result;
}

/// "qmdb get [OPTIONS] DIR MATERIAL PARAMETER"
std::string usageLine(const CLI::App& command)
{
    std::string text = bold("qmdb " + commandName(command)) + " [" + italic("options") + "]";
    const CLI::Formatter formatter;
    for (const CLI::Option* positional : positionals(command)) {
        text += " " + italic(formatter.make_option_usage(positional));
    }
    return text + "\n";
}

/// How an option is written: "-o, --output FILE".
std::string written(const CLI::Option& option)
{
    if (option.get_positional()) {
        return italic(escaped(placeholder(option)));
    }
    std::vector<std::string> names;
    for (const std::string& name : option.get_snames()) {
        names.push_back(bold(escaped("-" + name)));
    }
    for (const std::string& name : option.get_lnames()) {
        names.push_back(bold(escaped("--" + name)));
    }
    const std::string value = placeholder(option);
    const bool takesValue = option.get_items_expected_max() > 0;
    std::string shown = value.find('{') == value.npos ? value : value.substr(value.find('{'));
    for (int i = 1; i < option.get_items_expected_min(); ++i) {
        shown += " " + value;
    }
    return fmt::format(
        "{}{}{}", fmt::join(names, ", "), takesValue ? " " : "", takesValue ? italic(escaped(shown)) : "");
}

std::string sentence(std::string text)
{
    return text + (text.empty() || text.ends_with('.') ? "" : ".");
}

std::string explained(const CLI::Option& option)
{
    return fmt::format(".TP\n{}\n{}", written(option), roffText(sentence(option.get_description())));
}

/// All that have something to do by themselves.
std::vector<const CLI::App*> leaves(const CLI::App& command)
{
    const auto below = subcommands(command);
    std::vector<const CLI::App*> all;
    for (const CLI::App* each : below) {
        const auto more = leaves(*each);
        all.insert(all.end(), more.begin(), more.end());
    }
    return below.empty() ? std::vector { &command } : all;
}

Options argumentsAndOptions(const CLI::App& command)
{
    Options all = positionals(command);
    const Options options = visibleOptions(command);
    all.insert(all.end(), options.begin(), options.end());
    return all;
}

class ManualPage {
public:
    explicit ManualPage(const CLI::App& app)
        : app_(app)
    {
        for (const CLI::App* command : leaves(app)) {
            for (const CLI::Option* option : argumentsAndOptions(*command)) {
                users_[explained(*option)].push_back(command);
                order_.push_back(explained(*option));
            }
        }
    }

    std::string text()
    {
        std::string description = app_.get_description();
        description.front() = static_cast<char>(std::tolower(description.front()));
        text_ = fmt::format(".\\\" Made by \"qmdb manual\" from the texts of --help.\n"
                            ".TH QMDB 1 \"\" \"qmDatabase\" \"User commands\"\n.SH NAME\nqmdb \\- {}\n"
                            ".SH SYNOPSIS\n.nf\n",
            escaped(description));
        for (const CLI::App* command : leaves(app_)) {
            text_ += usageLine(*command);
        }
        text_ += fmt::format(".fi\n.SH DESCRIPTION\n{}.SH COMMANDS\n", paragraphs(proseOf("")));
        for (const CLI::App* command : subcommands(app_)) {
            addCommand(*command);
        }
        addShared();
        for (const ManualSection& section : manualSections()) {
            text_ += fmt::format(".SH {}\n{}", upperCase(section.title), paragraphs(section.text));
        }
        text_ += ".SH EXAMPLES\n" + example(app_) + ".SH SEE ALSO\n.BR gnuplot (1),\n.BR sqlite3 (1)\n";
        return text_;
    }

private:
    static std::string upperCase(std::string_view text)
    {
        std::string upper(text);
        std::ranges::transform(upper, upper.begin(), [](unsigned char each) { return std::toupper(each); });
        return upper;
    }

    /// The lines of a footer "Examples:".
    static std::string example(const CLI::App& command)
    {
        std::string lines;
        std::istringstream footer(command.get_footer());
        for (std::string line; std::getline(footer, line);) {
            const std::size_t begin = line.find("qmdb ");
            lines += begin == line.npos ? "" : escaped(line.substr(begin)) + "\n";
        }
        if (lines.empty()) {
            throw Failure(
                "the help of \"qmdb {}\" has no example; add one as its footer", commandName(command));
        }
        return fmt::format(".PP\n.nf\n{}.fi\n", lines);
    }

    void addCommand(const CLI::App& command)
    {
        const std::string name = commandName(command);
        const auto below = subcommands(command);
        if (proseOf(name).empty()) {
            throw Failure("the manual knows nothing of \"qmdb {}\"; add it to the table of prose", name);
        }
        text_ += fmt::format(".SS {}\n{}.PP\n{}", name, roffText(sentence(command.get_description())),
            paragraphs(proseOf(name)));
        if (below.empty()) {
            addOptions(command);
        }
        text_ += example(command);
        for (const CLI::App* each : below) {
            addCommand(*each);
        }
    }

    void addOptions(const CLI::App& command)
    {
        std::vector<std::string> elsewhere;
        for (const CLI::Option* option : argumentsAndOptions(command)) {
            if (users_[explained(*option)].size() < leastShared) {
                text_ += explained(*option);
            } else {
                elsewhere.push_back(written(*option));
            }
        }
        if (!elsewhere.empty()) {
            text_ += fmt::format(".PP\nTakes as well, see below: {}.\n", fmt::join(elsewhere, "; "));
        }
    }

    /// What several commands take, where it comes first.
    void addShared()
    {
        text_ += ".SH ARGUMENTS AND OPTIONS OF SEVERAL COMMANDS\n";
        std::vector<std::string> told;
        for (const std::string& option : order_) {
            if (users_[option].size() >= leastShared && std::ranges::find(told, option) == told.end()) {
                text_ += option;
                told.push_back(option);
            }
        }
    }

    const CLI::App& app_;
    std::string text_;
    std::map<std::string, std::vector<const CLI::App*>> users_; ///< of each explanation
    std::vector<std::string> order_;
};

} // namespace

std::string manualPage(const CLI::App& app)
{
    return ManualPage(app).text();
}

} // namespace tool
