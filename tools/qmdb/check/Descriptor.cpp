#include "check/Descriptor.h"

#include "common/shown.h"

#include "files/conversions.h"
#include "files/descriptorLine.h"
#include "qm/CQMTranscoder.h"
#include "qm/EQMException.h"

#include <algorithm>
#include <fmt/format.h>

namespace tool::check {

namespace {

bool isAscii(std::string_view bytes)
{
    return std::ranges::all_of(bytes, [](char byte) { return static_cast<unsigned char>(byte) < 0x80; });
}

bool isUtf8(std::string_view bytes)
{
    try {
        qm::CQMTranscoder::UTF8ToText(bytes);
        return true;
    } catch (const qm::EQMException&) {
        return false;
    }
}

} // namespace

Descriptor::Descriptor(Context& context, std::string file)
    : file_(std::move(file))
{
    readable_ = readLines(context, file_, [&](const RawLine& line) { addLine(context, line); });
}

std::string Descriptor::text(std::string_view key) const
{
    const auto found = values_.find(key);
    return found == values_.end() ? std::string() : found->second.text;
}

long Descriptor::number(std::string_view key) const
{
    return conversions::wstr2long(text(key));
}

Place Descriptor::place(std::string_view key) const
{
    const auto found = values_.find(key);
    return { file_, found == values_.end() ? 0 : found->second.line };
}

std::string Descriptor::decode(Context& context, const RawLine& line)
{
    std::string_view bytes = line.bytes;
    if (line.place.line == 1 && bytes.starts_with(utf8Mark)) {
        utf8_ = true;
        bytes.remove_prefix(utf8Mark.size());
    }
    if (utf8_ && !isUtf8(bytes)) {
        context.findings.error("bad-encoding", line.place,
            "the file is marked as UTF-8, but the line is not UTF-8", "save the file as UTF-8");
    }
    if (!utf8_ && !isAscii(bytes) && !unmarkedReported_) {
        unmarkedReported_ = true;
        context.findings.warning("no-mark", line.place,
            "text beyond ASCII without a UTF-8 mark is read in the locale of each reader",
            "save the file as UTF-8 with a byte-order mark");
    }
    std::string decoded;
    return std::string(decodeLine(bytes, utf8_, decoded));
}

void Descriptor::addLine(Context& context, const RawLine& line)
{
    const std::string text = decode(context, line);
    if (text.empty()) {
        return;
    }
    const std::size_t sign = text.find('=');
    if (sign == std::string::npos) {
        context.findings.error("no-key", line.place,
            fmt::format("{} holds no \"=\" and is skipped", shown(text)),
            "write KEY=VALUE, or remove the line: there are no comments in descriptors");
        return;
    }
    const std::string key = text.substr(0, sign);
    const auto [entry, isNew]
        = values_.insert_or_assign(key, Value { text.substr(sign + 1), line.place.line });
    if (!isNew) {
        context.findings.warning("duplicate-key", line.place,
            fmt::format("the key {} stands in the file before; the last one counts", shown(key)),
            "remove one of them");
    }
}

} // namespace tool::check
