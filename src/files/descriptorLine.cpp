#include "files/descriptorLine.h"

#include "qm/CQMTranscoder.h"
#include "qm/EQMException.h"
#include "qm/text.h"

namespace {

std::string decode(std::string_view bytes, bool utf8)
{
    if (utf8) {
        try {
            return qm::CQMTranscoder::UTF8ToText(bytes);
        } catch (const qm::EQMException&) {
            return qm::CQMTranscoder::AnsiToText(bytes);
        }
    }
    return qm::CQMTranscoder::AnsiToText(bytes);
}

} // namespace

std::string_view decodeLine(std::string_view bytes, bool utf8, std::string& decoded)
{
    if (qm::text::isPlain(bytes) && (utf8 || qm::CQMTranscoder::IsAnsiAscii())) {
        return withoutCr(bytes);
    }
    decoded = decode(bytes.substr(0, bytes.find('\0')), utf8);
    return withoutCr(decoded);
}
