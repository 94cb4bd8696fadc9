#include "commands/valueInput.h"

#include "commands/subcommand.h"
#include "common/characters.h"
#include "common/encodings.h"
#include "common/numbers.h"
#include "common/vocabulary.h"
#include "input/tableRows.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fmt/ranges.h>
#include <fstream>
#include <iostream>

namespace tool {

namespace {

double numberOfOption(const std::string& text)
{
    const auto number = asFiniteNumber(text);
    if (!number) {
        throw Failure(
            "--value takes finite numbers, and {} is none; it is the last option on the line", shown(text));
    }
    return *number;
}

Table tableOfNumbers(const std::vector<std::string>& numbers)
{
    if (numbers.size() == 2) {
        throw Failure("--value takes one number, or the three components of a vector");
    }
    Table table;
    table.components = numbers.size();
    table.points.resize(1);
    std::ranges::transform(numbers, table.points.front().components.begin(), numberOfOption);
    return table;
}

InputRows readFile(const std::string& name)
{
    if (name == "-") {
        return readRows(std::cin, "standard input");
    }
    std::ifstream input(toLocale(name));
    if (!input) {
        throw Failure("cannot read \"{}\": {}", name, std::strerror(errno));
    }
    return readRows(input, name);
}

/// The type that the user gives, else the first that a table of so many arguments may have.
PARAM_TYPE typeOf(const std::string& given, const Table& table)
{
    constexpr std::pair<std::size_t, std::size_t> runs[] = { { 0, 1 }, { 1, 2 }, { 3, 2 } };
    const auto [first, count] = runs[table.arguments];
    const std::string_view possible = vocabulary::typeLetters.substr(first, count);
    if (!given.empty() && possible.find(given) == std::string_view::npos) {
        throw Failure("type {} does not fit: a value with {} arguments has the type {}", given,
            table.arguments, fmt::join(possible, " or "));
    }
    const std::string letter = given.empty() ? std::string(possible.substr(0, 1)) : given;
    return static_cast<PARAM_TYPE>(vocabulary::typeLetters.find(letter) + 1);
}

} // namespace

CLI::Option_group* addValueInput(CLI::App& command, ValueInput& input)
{
    std::vector<std::string> types;
    for (const char letter : vocabulary::typeLetters) {
        types.emplace_back(1, letter);
    }
    command
        .add_option("--type", input.type,
            "C constant, t or p table of one argument, T or X of two; by default C, t or T")
        ->check(CLI::IsMember(types));
    command
        .add_option("--comment", input.comments,
            "A comment line of the data file, several times if need be; those of the file are kept behind it")
        ->type_name("TEXT")
        ->allow_extra_args(false);
    auto* group = command.add_option_group("Value", "One of these");
    group->add_option("--value", input.value, "A constant, or the three components of a vector")
        ->expected(1, 3)
        ->type_name("NUMBER");
    group
        ->add_option("--file", input.file,
            "A table: rows of argument(s) and value, or three components, in CSV or between blanks; - is "
            "standard input")
        ->type_name("FILE")
        ->check(notEmpty());
    return group;
}

GivenValue readValue(const ValueInput& input)
{
    GivenValue given;
    given.comments = input.comments;
    if (!input.value.empty()) {
        given.table = tableOfNumbers(input.value);
    } else {
        const InputRows read = readFile(input.file);
        given.table = tableOf(read.rows, input.file == "-" ? "standard input" : input.file);
        given.comments.insert(given.comments.end(), read.comments.begin(), read.comments.end());
    }
    given.type = typeOf(input.type, given.table);
    return given;
}

std::string formText(const Table& table, PARAM_TYPE type)
{
    const std::size_t points = table.points.size();
    return fmt::format("{}, {}, {} {}", typeText(type), table.components > 1 ? "vector" : "scalar", points,
        points == 1 ? "point" : "points");
}

} // namespace tool
