#include "commands/plotOptions.h"

#include "common/characters.h"
#include "common/failure.h"
#include "common/numbers.h"

namespace tool {

namespace {

constexpr unsigned leastSize = 100;
constexpr unsigned mostSize = 10000;

struct NamedRange {
    char axis = 'x';
    Range range;
};

/// "300:600" is a range of x, "y=0:10" one of y.
NamedRange rangeOf(const std::string& text)
{
    const bool isNamed = text.starts_with("x=") || text.starts_with("y=");
    const std::string numbers = isNamed ? text.substr(2) : text;
    const std::size_t colon = numbers.find(':');
    const auto least = asFiniteNumber(numbers.substr(0, colon));
    const auto most = colon == std::string::npos ? std::nullopt : asFiniteNumber(numbers.substr(colon + 1));
    if (!least || !most || !(*least < *most)) {
        throw Failure("--range {}: write the least and the most, such as 300:600, or y=0:10 for the values",
            shown(text));
    }
    return { isNamed ? text.front() : 'x', { *least, *most } };
}

/// "1200x800".
PictureSize sizeOf(const std::string& text)
{
    const std::size_t cross = text.find('x');
    const auto width = asWholeNumber(text.substr(0, cross));
    const auto height = cross == std::string::npos ? std::nullopt : asWholeNumber(text.substr(cross + 1));
    const auto isFit
        = [](std::optional<long> number) { return number && *number >= leastSize && *number <= mostSize; };
    if (!isFit(width) || !isFit(height)) {
        throw Failure("--size {}: write width and height in pixels, {} to {}, such as 1200x800", shown(text),
            leastSize, mostSize);
    }
    return { static_cast<unsigned>(*width), static_cast<unsigned>(*height) };
}

bool namesAxes(const std::string& text)
{
    return text == "x" || text == "y" || text == "xy";
}

AxisWish wishFor(char axis, const LookOptions& options)
{
    AxisWish wish;
    if (options.linear) {
        wish.scale = Scale::Linear;
    } else if (!options.logarithmic.empty()) {
        wish.scale = options.logarithmic.find(axis) == std::string::npos ? Scale::Linear : Scale::Logarithmic;
    }
    for (const std::string& text : options.ranges) {
        const NamedRange named = rangeOf(text);
        if (named.axis == axis) {
            wish.range = named.range;
        }
    }
    return wish;
}

} // namespace

void addLookOptions(CLI::App& command, LookOptions& options)
{
    command.add_flag("--linear", options.linear, "No logarithmic axis");
    command
        .add_option("--range", options.ranges,
            "What the horizontal axis shows, such as 300:600; y=0:10 for the vertical one")
        ->type_name("FROM:TO")
        ->allow_extra_args(false);
    command.add_option("--size", options.size, "Width and height in pixels; 96 are an inch of a PDF")
        ->type_name("WxH");
    command.add_option("--title", options.title, "Title of the picture")->type_name("TEXT");
}

void addLogOption(CLI::App& command, std::string& logarithmic, std::string& logDirectory)
{
    command.remove_option(command.get_option("--log"));
    command
        .add_option_function<std::vector<std::string>>(
            "--log",
            [&](const std::vector<std::string>& texts) {
                for (const std::string& text : texts) {
                    (namesAxes(text) ? logarithmic : logDirectory) = text;
                }
            },
            "x, y or xy: logarithmic axes; without it those whose numbers span more than two decades. A "
            "directory: "
            "write the library's log, qmdb.log, there")
        ->type_name("x|y|xy|DIR")
        ->allow_extra_args(false)
        ->check(CLI::Validator(
            [](const std::string& text) {
                return namesAxes(text) || CLI::ExistingDirectory(text).empty() ? std::string()
                                                                               : shown(text)
                        + ": write x, y or xy for logarithmic axes, or a directory for the library's log";
            },
            ""));
}

void applyLook(Picture& picture, const LookOptions& options)
{
    if (!options.title.empty()) {
        picture.title = printable(options.title);
    }
    if (!options.size.empty()) {
        picture.size = sizeOf(options.size);
    }
    fitAxes(picture, wishFor('x', options), wishFor('y', options));
}

} // namespace tool
