#include "check/rules.h"

#include "common/characters.h"

#include "format/numbers.h"
#include "format/rows.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>
#include <optional>
#include <set>
#include <vector>

namespace tool::check {

namespace {

/// What the numbers of a line are called.
constexpr std::string_view numberNames[] = { "number 1", "number 2", "number 3", "number 4" };

/// Follows a data file line by line.
class DataFileCheck {
public:
    DataFileCheck(Context& context, std::string file, bool twoArguments, std::size_t numbers)
        : context_(context)
        , file_(std::move(file))
        , twoArguments_(twoArguments)
        , numbers_(numbers)
    {
    }

    void run()
    {
        if (readLines(context_, file_, [this](const RawLine& line) { addLine(line); })) {
            closeSubtable();
            if (constant_) {
                checkConstant(*constant_);
            }
            if (rows_ == 0) {
                context_.findings.error("no-data", { file_, Place::endOfFile }, "the file holds no data",
                    "write the numbers, or remove the parameter");
            }
        }
    }

private:
    /// A line that may be the value.
    struct Constant {
        Place place;
        std::string text;
    };

    bool isConstant() const { return numbers_ == 1 || numbers_ == 3; }

    void addLine(const RawLine& line)
    {
        if (line.isCut) {
            ++rows_; // nothing can be read of the file
            return;
        }
        const std::string_view bytes = withoutMark(line);
        checkAscii(line.place, bytes);
        const std::string_view text = decoder_.decode(bytes);
        const bool isSkipped = format::isSkipped(text);
        const auto first = format::firstArgumentOf(text);
        if (twoArguments_ && line.endsFile && !isSkipped && !first) {
            ++rows_;
            context_.findings.error("dropped-line", line.place,
                "the last line is lost: no line end follows it", "end the file with a line end");
            return;
        }
        reportUnended(context_, line);
        if (isSkipped) {
            return;
        }
        if (twoArguments_ && first) {
            addHeader(line.place, *first);
        } else if (isConstant()) {
            addConstant(line.place, text);
        } else {
            addRow(line.place, text);
        }
    }

    std::string_view withoutMark(const RawLine& line)
    {
        if (line.place.line != 1 || !line.bytes.starts_with(format::utf8Mark)) {
            return line.bytes;
        }
        context_.findings.error("mark-in-data", line.place,
            "data files have no byte-order mark; it counts as part of the line", "save the file without it");
        return line.bytes.substr(format::utf8Mark.size());
    }

    void checkAscii(const Place& place, std::string_view bytes)
    {
        const auto isAscii = [](char byte) { return static_cast<unsigned char>(byte) < 0x80; };
        if (!bytes.starts_with(format::commentSign) && !std::ranges::all_of(bytes, isAscii)) {
            context_.findings.error("not-ascii", place,
                "the line holds bytes beyond ASCII; in some locales it is lost without a word",
                "write plain numbers");
        }
    }

    void addHeader(const Place& place, std::string_view text)
    {
        closeSubtable();
        header_ = place;
        subtableRows_ = 0;
        last_.reset();
        const auto first = readNumber(context_, place, text, "the first argument");
        if (!first || std::isnan(*first)) {
            return;
        }
        if (!firstArguments_.insert(*first).second) {
            context_.findings.warning("repeated-subtable", place,
                fmt::format("the first argument {} has a subtable already", *first), "put the rows together");
        } else if (lastFirst_ && *first < *lastFirst_) {
            context_.findings.warning("decreasing-subtable", place,
                fmt::format("the first argument {} is less than that of the subtable before, {}", *first,
                    *lastFirst_),
                "put the subtables in the order of their first arguments");
        }
        lastFirst_ = first;
    }

    void closeSubtable()
    {
        if (header_ && subtableRows_ == 0) {
            context_.findings.warning("empty-subtable", *header_, "no row follows: the subtable is dropped",
                "write its rows, or remove the line");
        }
    }

    /// Of several lines the last is the value; it is judged at the end.
    void addConstant(const Place& place, std::string_view text)
    {
        if (constant_) {
            context_.findings.warning("ignored-line", constant_->place,
                "the line is not read: the last one is the value", "remove it, or let it begin with \"#\"");
        }
        constant_ = { place, std::string(text) };
        ++rows_;
    }

    void checkConstant(const Constant& constant)
    {
        if (numbers_ == 1) {
            readNumber(context_, constant.place, constant.text, "the value");
        } else {
            readNumbers(constant.place, constant.text);
        }
    }

    void addRow(const Place& place, std::string_view text)
    {
        ++rows_;
        ++subtableRows_;
        if (twoArguments_ && !header_) {
            context_.findings.error("no-header", place, "the row stands before the first \"P=\" line",
                "begin with a line \"P=\" and the first argument");
        }
        const auto numbers = readNumbers(place, text);
        if (numbers.empty()) {
            return;
        }
        const double argument = numbers.front();
        if (!format::mayFollow(last_, argument)) {
            context_.findings.error("not-increasing", place,
                last_ ? fmt::format(
                    "the argument {} does not increase: the row before has {}", argument, *last_)
                      : fmt::format("the argument {} is no number", argument),
                "put the rows in the order of their arguments, each argument once");
        }
        last_ = argument;
    }

    /// The numbers of a line; none when their count is wrong or one of them is none.
    std::vector<double> readNumbers(const Place& place, std::string_view text)
    {
        std::vector<double> numbers(numbers_);
        if (format::parsePlainRow(text, numbers)) {
            return numbers; // nothing is amiss in nearly all rows
        }
        const std::vector<std::string> parts = format::splitString(text);
        if (parts.size() != numbers_) {
            context_.findings.error("bad-row", place,
                fmt::format("{} is not {} numbers with blanks between", shown(text), numbers_),
                adviceOnRow(text));
            return {};
        }
        numbers.clear();
        for (std::size_t i = 0; i < parts.size(); ++i) {
            if (const auto number = readNumber(context_, place, parts[i], numberNames[i])) {
                numbers.push_back(*number);
            }
        }
        return numbers.size() == numbers_ ? numbers : std::vector<double>();
    }

    std::string adviceOnRow(std::string_view text) const
    {
        if (twoArguments_ && text.starts_with("p=")) {
            return "begin the line with a capital \"P=\"";
        }
        if (text.find_first_of("\t;,") != std::string_view::npos) {
            return fmt::format(
                "put blanks between the numbers, not tabs, commas or semicolons, {} numbers a line",
                numbers_);
        }
        return fmt::format(
            "write {} numbers; a comment is a line of its own that begins with \"#\"", numbers_);
    }

    Context& context_;
    format::CLineDecoder decoder_ { false };
    std::string file_;
    bool twoArguments_;
    std::size_t numbers_; ///< on a line
    std::size_t rows_ = 0;
    std::size_t subtableRows_ = 0;
    std::optional<Place> header_; ///< the "P=" line above
    std::optional<Constant> constant_;
    std::optional<double> last_; ///< the argument of the row before
    std::optional<double> lastFirst_; ///< the first argument of the subtable before
    std::set<double> firstArguments_;
};

} // namespace

void checkDataFile(Context& context, const std::string& file, long type, bool vector)
{
    if (!format::isType(type)) {
        return; // reported with the head
    }
    const std::size_t components = vector ? 3 : 1;
    const std::size_t numbers = components + (type == PARAM_TYPE_CONSTANT ? 0 : 1);
    DataFileCheck(context, file, type >= PARAM_TYPE_TABLE2D_T, numbers).run();
}

} // namespace tool::check
