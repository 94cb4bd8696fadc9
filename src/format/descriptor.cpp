#include "format/descriptor.h"

#include "qm/CQMTranscoder.h"

namespace format {

CLineDecoder::CLineDecoder(bool utf8)
    : utf8_(utf8)
    , plainIsText_(utf8 || qm::CQMTranscoder::IsAnsiAscii())
{
}

std::string_view CLineDecoder::convert(std::string_view bytes)
{
    bytes = bytes.substr(0, bytes.find('\0'));
    std::optional<std::string> text = utf8_ ? text::fromUtf8(bytes) : std::nullopt;
    decoded_ = text ? std::move(*text) : text::fromLocale(bytes);
    return decoded_;
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
