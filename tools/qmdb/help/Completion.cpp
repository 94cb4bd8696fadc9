#include "help/Completion.h"

#include "common/characters.h"
#include "common/failure.h"
#include "common/names.h"
#include "help/CommandLine.h"
#include "help/NamesInDatabase.h"
#include "help/TypedLine.h"
#include "output/Output.h"

#include <algorithm>
#include <functional>
#include <map>

namespace tool {

namespace {

using Kind = Completion::Kind;

/// The words in the braces of a choice.
std::vector<Candidate> wordsOfChoice(const std::string& choice)
{
    std::vector<Candidate> words;
    const std::size_t begin = choice.find('{') + 1;
    for (const std::string& word : CLI::detail::split(choice.substr(begin, choice.find('}') - begin), ',')) {
        words.push_back({ word });
    }
    return words;
}

std::vector<Candidate> joined(std::vector<Candidate> all, const std::vector<Candidate>& more)
{
    all.insert(all.end(), more.begin(), more.end());
    return all;
}

std::vector<Candidate> components(const NamesInDatabase& names)
{
    std::vector<Candidate> components = names.substances();
    for (Candidate& component : components) {
        component.text += ':';
    }
    return components;
}

/// The names that may stand for a placeholder.
std::vector<Candidate> namesFor(
    const std::string& placeholder, const CommandLine& line, const std::string& word)
{
    const NamesInDatabase names(line);
    const CLI::App* parent = line.command().get_parent();
    const bool adds = parent && parent->get_name() == "add" && !line.values("SUBSTANCE").empty();
    const std::map<std::string, std::function<std::vector<Candidate>()>> sources {
        { "SUBSTANCE", [&] { return names.substances(); } },
        { "SUBSTANCE:FRACTION", [&] { return components(names); } },
        { "MATERIAL", // of several the last word is the parameter
            [&] {
                const bool behind = !line.values("MATERIAL").empty();
                return joined(names.materials(word), behind ? names.parameters() : std::vector<Candidate>());
            } },
        { "PHASE", [&] { return names.phases(); } },
        { "CHANGE", [&] { return names.changes(); } },
        { "PARAMETER", [&] { return adds ? names.describedParameters() : names.parameters(); } },
        { "TEXT", [&] { return joined(names.substances(), names.parameters()); } },
    };
    const auto source = sources.find(placeholder);
    return source == sources.end() ? std::vector<Candidate>() : source->second();
}

Completion completeValue(const CLI::Option& option, const CommandLine& line, const std::string& word)
{
    const std::string wanted = placeholder(option);
    if (wanted.find('{') != std::string::npos) {
        return { Kind::Words, wordsOfChoice(wanted) };
    }
    if (wanted == "LANGUAGE") {
        return { Kind::Words, { { "en" }, { "ru" } } };
    }
    if (wanted == "DIR" || wanted == "OTHER") {
        return { Kind::Directories };
    }
    if (wanted == "FILE") {
        return { Kind::Files };
    }
    // An option that takes any text says TEXT as well.
    if (line.values("DIR").empty() || (wanted == "TEXT" && option.nonpositional())) {
        return {};
    }
    return { wanted == "SUBSTANCE:FRACTION" ? Kind::WordBegins : Kind::Words, namesFor(wanted, line, word) };
}

Completion completeOption(const CommandLine& line)
{
    Completion completion;
    for (const CLI::Option* option : visibleOptions(line.command())) {
        const bool again = option->get_expected_max() > 1;
        const auto excludes = option->get_excludes();
        const bool excluded
            = std::ranges::any_of(excludes, [&](const auto* other) { return line.isGiven(*other); });
        if (!excluded && (again || !line.isGiven(*option))) {
            completion.candidates.push_back(
                { "--" + option->get_lnames().front(), option->get_description() });
        }
    }
    return completion;
}

/// The value behind "--option=".
Completion completeAssigned(const CommandLine& line, const std::string& word)
{
    const std::size_t sign = word.find('=');
    const CLI::Option* option = line.command().get_option_no_throw(word.substr(0, sign));
    if (!option) {
        return {};
    }
    Completion completion = completeValue(*option, line, word.substr(sign + 1));
    for (Candidate& candidate : completion.candidates) {
        candidate.text.insert(0, word, 0, sign + 1);
    }
    return completion;
}

Completion completeAny(const CommandLine& line, const std::string& word)
{
    if (line.mayTakeOption() && word.starts_with('-')) {
        return word.find('=') == word.npos ? completeOption(line) : completeAssigned(line, word);
    }
    const auto commands = subcommands(line.command());
    if (line.mayTakeCommand() && !commands.empty()) {
        Completion completion;
        for (const CLI::App* command : commands) {
            completion.candidates.push_back({ command->get_name(), command->get_description() });
        }
        return completion;
    }
    const CLI::Option* option = line.expected();
    return option ? completeValue(*option, line, word) : Completion();
}

/// Leaves the candidates that begin with the word; where none does, those that begin so without regard to
/// case, as far as they agree in it: shells replace the word by what the candidates have in common.
void keepMatching(std::vector<Candidate>& candidates, const std::string& word)
{
    std::erase_if(candidates, [](const Candidate& each) { return printable(each.text) != each.text; });
    const auto isExact = [&](const Candidate& each) { return each.text.starts_with(word); };
    if (std::ranges::any_of(candidates, isExact)) {
        std::erase_if(candidates, [&](const Candidate& each) { return !isExact(each); });
        return;
    }
    const std::string lower = lowerCase(word);
    std::erase_if(
        candidates, [&](const Candidate& each) { return !lowerCase(each.text).starts_with(lower); });
    if (!candidates.empty()) {
        const std::string begin = candidates.front().text.substr(0, word.size());
        std::erase_if(candidates, [&](const Candidate& each) { return !each.text.starts_with(begin); });
    }
}

std::string_view kindText(Kind kind)
{
    switch (kind) {
    case Kind::WordBegins:
        return "begins";
    case Kind::Files:
        return "files";
    case Kind::Directories:
        return "directories";
    case Kind::Words:
        break;
    }
    return "words";
}

void printForBash(Output& output, const CLI::App& app, std::string_view text, std::string_view breaks)
{
    const TypedLine line(text, breaks);
    const std::vector<std::string> words(line.words().begin() + 1, line.words().end());
    const Completion completion = complete(app, words);
    output.print("{}\n", kindText(completion.kind));
    for (const Candidate& candidate : completion.candidates) {
        output.print("{}\n", line.replacement(candidate.text));
    }
}

void printPlain(Output& output, const CLI::App& app, const std::vector<std::string>& words)
{
    const Completion completion = complete(app, words);
    output.print("{}\n", kindText(completion.kind));
    for (const Candidate& candidate : completion.candidates) {
        output.print("{}\t{}\n", candidate.text, printable(candidate.description));
    }
}

} // namespace

Completion complete(const CLI::App& app, const std::vector<std::string>& words)
{
    if (words.empty()) {
        return {};
    }
    const CommandLine line(app, { words.begin(), words.end() - 1 });
    Completion completion = completeAny(line, words.back());
    keepMatching(completion.candidates, words.back());
    return completion;
}

int runComplete(const CLI::App& app, const std::vector<std::string>& arguments)
{
    constexpr std::size_t lineAndBreaks = 4;
    Output output;
    try {
        if (arguments.size() == lineAndBreaks && arguments[0] == "--line") {
            printForBash(output, app, arguments[1], arguments[3]);
        } else if (!arguments.empty() && arguments[0] == "--") {
            printPlain(output, app, { arguments.begin() + 1, arguments.end() });
        }
    } catch (const std::exception&) { // no database, or a damaged one: there is nothing to offer
        return ExitDone;
    }
    output.finish();
    return ExitDone;
}

} // namespace tool
