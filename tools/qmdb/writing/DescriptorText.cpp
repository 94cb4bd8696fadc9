#include "writing/DescriptorText.h"

#include "check/lines.h"
#include "common/characters.h"
#include "common/encodings.h"
#include "common/failure.h"
#include "database/statusText.h"

#include "format/descriptor.h"
#include "format/innerText.h"
#include "format/vocabulary.h"

#include <algorithm>

namespace tool::writing {

namespace {

using Result = format::CDescriptorParser::Result;

void requireReadable(std::string_view key, std::string_view value)
{
    if (std::ranges::any_of(toWide(value), isControl)) {
        throw Failure("{} holds a control character: {}", key, shown(value));
    }
    if (key.size() + 1 + value.size() + format::utf8Mark.size() > format::maxLineLength) {
        throw Failure("{} is too long: a line of a file holds {} bytes", key, format::maxLineLength);
    }
}

} // namespace

DescriptorText DescriptorText::read(const std::string& root, const std::string& file)
{
    check::Findings findings;
    check::Context context { root, findings };
    DescriptorText text;
    format::CDescriptorParser parser;
    bool whole = check::readLines(context, file, [&](const check::RawLine& line) {
        const Result result = parser.parse(line.bytes);
        if (result != Result::Blank) {
            text.lines_.push_back(
                { std::string(parser.key()), std::string(parser.value()), result == Result::Entry });
        }
    });
    whole = whole && !findings.hasAny({ "long-line", "nul-byte" });
    if (!whole) {
        throw Failure("\"{}\" cannot be changed: not all of it can be read\n{}", file, checkHint(root));
    }
    return text;
}

std::optional<std::string> DescriptorText::text(std::string_view key) const
{
    const auto found = std::find_if(
        lines_.rbegin(), lines_.rend(), [&](const Line& line) { return line.hasKey && line.key == key; });
    return found == lines_.rend() ? std::nullopt : std::optional(found->value);
}

void DescriptorText::set(std::string_view key, std::string_view value)
{
    requireReadable(key, value);
    const auto isKey = [&](const Line& line) { return line.hasKey && line.key == key; };
    auto place = std::ranges::find_if(lines_, isKey);
    if (place == lines_.end()) {
        place = std::ranges::find_if(lines_, [&](const Line& line) { return line.hasKey && line.key > key; });
        lines_.insert(place, { std::string(key), std::string(value) });
        return;
    }
    place->value = value;
    lines_.erase(std::remove_if(std::next(place), lines_.end(), isKey), lines_.end());
}

void DescriptorText::append(const std::string& key, std::string_view value)
{
    requireReadable(key, value);
    for (std::size_t i = places_.empty() ? 0 : lines_.size(); i < lines_.size(); ++i) {
        places_[lines_[i].key] = i; // the last one counts
    }
    const auto [place, isNew] = places_.emplace(key, lines_.size());
    if (isNew) {
        lines_.push_back({ key, std::string(value) });
    } else {
        lines_[place->second].value = value;
    }
}

void DescriptorText::remove(std::string_view key)
{
    std::erase_if(lines_, [&](const Line& line) { return line.hasKey && line.key == key; });
}

void DescriptorText::setOrRemove(std::string_view key, std::string_view value)
{
    value.empty() ? remove(key) : set(key, value);
}

std::string DescriptorText::bytes() const
{
    std::string bytes(format::utf8Mark);
    for (const Line& line : lines_) {
        if (!line.hasKey) {
            bytes += format::text::toUtf8(line.value).value_or(std::string()) + '\n';
        } else if (!format::appendEntry(bytes, line.key, line.value)) {
            throw Failure("the value of {} is no text", shown(line.key));
        }
    }
    return bytes;
}

} // namespace tool::writing
