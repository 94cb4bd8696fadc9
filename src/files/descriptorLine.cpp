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
    std::string_view line = bytes;
    if (!qm::text::isPlain(bytes) || !(utf8 || qm::CQMTranscoder::IsAnsiAscii())) {
        decoded = decode(bytes.substr(0, bytes.find('\0')), utf8);
        line = decoded;
    }
    if (line.ends_with('\r')) {
        line.remove_suffix(1);
    }
    return line;
}
