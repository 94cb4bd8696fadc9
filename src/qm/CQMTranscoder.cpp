#include "qm/CQMTranscoder.h"

#include <cstdlib>
#include <langinfo.h>

namespace qm {

namespace {

constexpr auto conversionFailed = static_cast<std::size_t>(-1);

} // namespace

std::string CQMTranscoder::WideToAnsi(std::wstring_view wide)
{
    const std::wstring source(wide);
    const std::size_t length = std::wcstombs(nullptr, source.c_str(), 0);
    if (length == 0 || length == conversionFailed) {
        return {};
    }
    std::string bytes(length, '\0');
    std::wcstombs(bytes.data(), source.c_str(), length);
    return bytes;
}

std::wstring CQMTranscoder::AnsiToWide(std::string_view bytes)
{
    const std::string source(bytes);
    const std::size_t length = std::mbstowcs(nullptr, source.c_str(), 0);
    if (length == 0 || length == conversionFailed) {
        return {};
    }
    std::wstring wide(length, L'\0');
    std::mbstowcs(wide.data(), source.c_str(), length);
    return wide;
}

bool CQMTranscoder::IsAnsiAscii()
{
    // Charsets known to be supersets of ASCII byte by byte; all others go through the C library.
    const std::string_view charset = nl_langinfo(CODESET);
    return charset == "UTF-8" || charset == "ANSI_X3.4-1968" || charset.starts_with("ISO-8859-");
}

} // namespace qm
