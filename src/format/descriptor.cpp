#include "format/descriptor.h"

#include "format/innerText.h"
#include "format/vocabulary.h"
#include "qm/CQMTranscoder.h"

namespace format {

namespace {

std::string_view withoutCr(std::string_view line) noexcept
{
    line.remove_suffix(line.ends_with('\r') ? 1 : 0);
    return line;
}

} // namespace

CLineDecoder::CLineDecoder(bool utf8)
    : utf8_(utf8)
    , plainIsText_(utf8 || qm::CQMTranscoder::IsAnsiAscii())
{
}

std::string_view CLineDecoder::decode(std::string_view bytes)
{
    if (plainIsText_ && text::isPlain(bytes)) {
        return withoutCr(bytes);
    }
    bytes = bytes.substr(0, bytes.find('\0'));
    std::optional<std::string> text = utf8_ ? text::fromUtf8(bytes) : std::nullopt;
    decoded_ = text ? std::move(*text) : text::fromLocale(bytes);
    return withoutCr(decoded_);
}

CDescriptorParser::Result CDescriptorParser::parse(std::string_view bytes)
{
    if (!decoder_) {
        utf8_ = bytes.starts_with(utf8Mark);
        bytes.remove_prefix(utf8_ ? utf8Mark.size() : 0);
        decoder_.emplace(utf8_);
    }
    // Decoded before it is cut: a character of more than one byte may be the "=".
    const std::string_view line = decoder_->decode(bytes);
    const std::size_t end = line.find(keyEnd);
    if (end == std::string_view::npos) {
        key_ = {};
        value_ = line;
        return line.empty() ? Result::Blank : Result::NoKey;
    }
    key_ = line.substr(0, end);
    value_ = line.substr(end + 1);
    return Result::Entry;
}

bool appendEntry(std::string& bytes, std::string_view key, std::string_view value)
{
    const std::optional<std::string> keyBytes = text::toUtf8(std::string(key));
    const std::optional<std::string> valueBytes = text::toUtf8(std::string(value));
    if (!keyBytes || !valueBytes) {
        return false;
    }
    bytes.append(*keyBytes).append(1, keyEnd).append(*valueBytes).append(1, '\n');
    return true;
}

} // namespace format
