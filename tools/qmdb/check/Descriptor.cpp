#include "check/Descriptor.h"

#include "common/characters.h"

#include "format/innerText.h"
#include "format/numbers.h"

#include <algorithm>
#include <fmt/format.h>

namespace tool::check {

namespace {

bool isAscii(std::string_view bytes)
{
    return std::ranges::all_of(bytes, [](char byte) { return static_cast<unsigned char>(byte) < 0x80; });
}

} // namespace

Descriptor::Descriptor(Context& context, std::string file)
    : file_(std::move(file))
{
    format::CDescriptorParser parser;
    readable_ = readLines(context, file_, [&](const RawLine& line) { addLine(context, line, parser); });
}

std::string Descriptor::text(std::string_view key) const
{
    const auto found = values_.find(key);
    return found == values_.end() ? std::string() : found->second.text;
}

long Descriptor::number(format::Key key) const
{
    return format::wstr2long(text(key));
}

Place Descriptor::place(std::string_view key) const
{
    const auto found = values_.find(key);
    return { file_, found == values_.end() ? 0 : found->second.line };
}

void Descriptor::checkEncoding(Context& context, const RawLine& line, bool utf8)
{
    const bool marked = utf8 && line.place.line == 1;
    const std::string_view bytes = line.bytes.substr(marked ? format::utf8Mark.size() : 0);
    if (utf8 && !format::text::fromUtf8(bytes)) {
        context.findings.error("bad-encoding", line.place,
            "the file is marked as UTF-8, but the line is not UTF-8", "save the file as UTF-8");
    }
    if (!utf8 && !isAscii(bytes) && !unmarkedReported_) {
        unmarkedReported_ = true;
        context.findings.warning("no-mark", line.place,
            "text beyond ASCII without a UTF-8 mark is read in the locale of each reader",
            "save the file as UTF-8 with a byte-order mark");
    }
}

void Descriptor::addLine(Context& context, const RawLine& line, format::CDescriptorParser& parser)
{
    const auto result = parser.parse(line.bytes);
    checkEncoding(context, line, parser.isUtf8());
    reportUnended(context, line);
    if (result == format::CDescriptorParser::Result::NoKey) {
        context.findings.error("no-key", line.place,
            fmt::format("{} holds no \"=\" and is skipped", shown(parser.value())),
            "write KEY=VALUE, or remove the line: there are no comments in descriptors");
    } else if (result == format::CDescriptorParser::Result::Entry) {
        addEntry(context, line.place, parser);
    }
}

void Descriptor::addEntry(Context& context, const Place& place, const format::CDescriptorParser& parser)
{
    Value value { std::string(parser.value()), place.line };
    if (!values_.insert_or_assign(std::string(parser.key()), std::move(value)).second) {
        context.findings.warning("duplicate-key", place,
            fmt::format("the key {} stands in the file before; the last one counts", shown(parser.key())),
            "remove one of them");
    }
}

} // namespace tool::check
