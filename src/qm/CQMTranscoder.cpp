#include "qm/CQMTranscoder.h"

#include "qm/EQMException.h"
#include "qm/text.h"

#include <bit>
#include <cstdlib>
#include <langinfo.h>

namespace qm {

namespace {

constexpr char32_t firstBeyondUnicode = 0x110000;
constexpr auto conversionFailed = static_cast<std::size_t>(-1);

/// Takes the first code point off bytes that are not empty. Overlong forms pass.
char32_t takeUTF8(std::string_view& bytes)
{
    const auto lead = static_cast<unsigned char>(bytes.front());
    const auto length = static_cast<std::size_t>(std::countl_one(lead));
    if (length == 1 || length > 4 || length > bytes.size()) {
        throw EQMException(ErrorCode::NotConvertible);
    }
    for (std::size_t i = 1; i < length; ++i) {
        if ((static_cast<unsigned char>(bytes[i]) & 0xC0) != 0x80) {
            throw EQMException(ErrorCode::NotConvertible);
        }
    }
    return text::takeFirst(bytes);
}

} // namespace

std::string CQMTranscoder::WideToUTF8(std::wstring_view wide)
{
    std::string bytes;
    bytes.reserve(wide.size());
    for (const wchar_t c : wide) {
        const auto codePoint = static_cast<char32_t>(c);
        if (codePoint >= firstBeyondUnicode) {
            throw EQMException(ErrorCode::NotConvertible);
        }
        text::append(bytes, codePoint);
    }
    return bytes;
}

std::wstring CQMTranscoder::UTF8ToWide(std::string_view bytes)
{
    std::wstring wide;
    wide.reserve(bytes.size());
    while (!bytes.empty()) {
        wide += static_cast<wchar_t>(takeUTF8(bytes));
    }
    return wide;
}

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

std::string CQMTranscoder::TextToUTF8(std::string_view text)
{
    return text::isPlain(text) ? std::string(text) : WideToUTF8(text::toWide(text));
}

std::string CQMTranscoder::UTF8ToText(std::string_view bytes)
{
    if (text::isPlain(bytes)) {
        return std::string(bytes);
    }
    std::string text;
    text.reserve(bytes.size());
    while (!bytes.empty()) {
        text::append(text, takeUTF8(bytes));
    }
    return text;
}

std::string CQMTranscoder::TextToAnsi(std::string_view text)
{
    return text::isPlain(text) && IsAnsiAscii() ? std::string(text) : WideToAnsi(text::toWide(text));
}

std::string CQMTranscoder::AnsiToText(std::string_view bytes)
{
    return text::isPlain(bytes) && IsAnsiAscii() ? std::string(bytes) : text::fromWide(AnsiToWide(bytes));
}

bool CQMTranscoder::IsAnsiAscii()
{
    // Charsets known to be supersets of ASCII byte by byte; all others go through the C library.
    const std::string_view charset = nl_langinfo(CODESET);
    return charset == "UTF-8" || charset == "ANSI_X3.4-1968" || charset.starts_with("ISO-8859-");
}

} // namespace qm
