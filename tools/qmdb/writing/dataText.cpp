#include "writing/dataText.h"

#include "common/characters.h"
#include "common/encodings.h"
#include "common/failure.h"
#include "common/numbers.h"

#include "format/innerText.h"
#include "format/vocabulary.h"

#include <algorithm>

namespace tool::writing {

namespace {

std::string commentLines(std::span<const std::string> comments)
{
    std::string bytes;
    for (const std::string& comment : comments) {
        std::string line = toLocale(
            fmt::format("{}{}{}", format::commentSign, comment.empty() ? "" : " ", plainComment(comment)));
        if (line.size() > format::maxLineLength) {
            throw Failure("the comment {} is too long: a line of a file holds {} bytes", shown(comment),
                format::maxLineLength);
        }
        bytes += line + '\n';
    }
    return bytes;
}

void appendNumbers(std::string& bytes, std::span<const double> numbers)
{
    bool isFirst = true;
    for (const double number : numbers) {
        if (!std::exchange(isFirst, false)) {
            bytes += format::columnSeparator;
        }
        bytes += numberText(number);
    }
    bytes += '\n';
}

/// True when a row cannot go on with the subtable of the one before.
bool beginsSubtable(const Point& before, const Point& point)
{
    return before.arguments[0] != point.arguments[0] || !(before.arguments[1] < point.arguments[1]);
}

/// Calls `use` with each line without its end; the last one may be empty.
template <class Use>
void forEachLine(std::string_view bytes, Use&& use)
{
    while (!bytes.empty()) {
        const std::size_t end = std::min(bytes.find('\n'), bytes.size());
        use(bytes.substr(0, end));
        bytes.remove_prefix(std::min(end + 1, bytes.size()));
    }
}

} // namespace

std::string dataText(const Table& table, std::span<const std::string> comments)
{
    std::string bytes = commentLines(comments);
    const Point* before = nullptr;
    for (const Point& point : table.points) {
        const bool twoArguments = table.arguments == 2;
        if (twoArguments && (!before || beginsSubtable(*before, point))) {
            bytes += format::subtableSign;
            bytes += numberText(point.arguments[0]) + '\n';
        }
        const auto numbers = numbersOf(table, point);
        appendNumbers(bytes, std::span(numbers).subspan(twoArguments ? 1 : 0));
        before = &point;
    }
    return bytes;
}

std::string withComments(std::string_view bytes, std::span<const std::string> comments)
{
    std::string changed = commentLines(comments);
    forEachLine(bytes, [&](std::string_view line) {
        if (!line.starts_with(format::commentSign)) {
            changed.append(line).append(1, '\n');
        }
    });
    return changed;
}

std::vector<std::string> commentsOf(std::string_view bytes)
{
    std::vector<std::string> comments;
    forEachLine(bytes, [&](std::string_view line) {
        if (line.starts_with(format::commentSign)) {
            line.remove_prefix(std::min<std::size_t>(line.size(), line.substr(1).starts_with(' ') ? 2 : 1));
            line.remove_suffix(line.ends_with('\r') ? 1 : 0);
            comments.push_back(format::text::fromLocale(line));
        }
    });
    return comments;
}

std::string plainComment(std::string_view text)
{
    std::wstring wide = toWide(text);
    std::ranges::replace_if(
        wide, [](wchar_t one) { return isControl(one) && one != L'\t'; }, L' ');
    return toUtf8(wide);
}

} // namespace tool::writing
