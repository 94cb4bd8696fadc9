#include "format/innerText.h"

#include "qm/CQMTranscoder.h"

#include <bit>
#include <cstdint>
#include <cstring>

namespace format::text {

namespace {

constexpr unsigned continuationBits = 6;
constexpr std::size_t longestUtf8 = 4; // bytes of one code point

/// Bytes that a code point of 0x80 or more takes: 2 for 11 bits, then 5 bits more a byte; 7 at most.
unsigned lengthOf(char32_t codePoint) noexcept
{
    const auto bits = static_cast<unsigned>(std::bit_width(static_cast<std::uint32_t>(codePoint)));
    return bits <= 11 ? 2 : (bits + 3) / 5;
}

/// True when the bytes begin with a code point in the pattern of UTF-8.
bool beginsInUtf8(std::string_view bytes) noexcept
{
    const auto length = static_cast<std::size_t>(std::countl_one(static_cast<unsigned char>(bytes.front())));
    if (length == 1 || length > longestUtf8 || length > bytes.size()) {
        return false;
    }
    for (std::size_t i = 1; i < length; ++i) {
        if ((static_cast<unsigned char>(bytes[i]) & 0xC0) != 0x80) {
            return false;
        }
    }
    return true;
}

/// 0x110000, the first value beyond Unicode, begins with the bytes F4 90, and all above with greater ones.
bool holdsValueBeyondUnicode(std::string_view text) noexcept
{
    constexpr unsigned char lastLead = 0xF4;
    constexpr unsigned char firstBeyond = 0x90;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        if (byte > lastLead || (byte == lastLead && static_cast<unsigned char>(text[i + 1]) >= firstBeyond)) {
            return true;
        }
    }
    return false;
}

} // namespace

bool isPlain(std::string_view text) noexcept
{
    // A high bit stays for a byte that is 0x80 or more, or borrows because it is 0.
    constexpr std::size_t wordSize = sizeof(std::uint64_t);
    if (text.size() < wordSize) {
        unsigned found = 0;
        for (const char c : text) {
            const unsigned byte = static_cast<unsigned char>(c);
            found |= byte | (byte - 1);
        }
        return (found & 0x80) == 0;
    }
    constexpr std::uint64_t lowBits = 0x0101010101010101;
    std::uint64_t found = 0;
    const char* const last = text.data() + text.size() - wordSize;
    for (const char* at = text.data();; at = at + wordSize < last ? at + wordSize : last) {
        std::uint64_t word = 0;
        std::memcpy(&word, at, wordSize);
        found |= word | (word - lowBits);
        if (at == last) {
            return (found & (lowBits << 7)) == 0;
        }
    }
}

void append(std::string& text, char32_t codePoint)
{
    if (codePoint < 0x80) {
        text += static_cast<char>(codePoint);
        return;
    }
    const unsigned length = lengthOf(codePoint);
    const std::uint64_t value = codePoint;
    unsigned shift = continuationBits * (length - 1);
    const unsigned mark = 0xFFu << (8 - length) & 0xFFu;
    text += static_cast<char>(mark | (value >> shift));
    while (shift > 0) {
        shift -= continuationBits;
        text += static_cast<char>(0x80 | (value >> shift & 0x3F));
    }
}

std::string fromWide(std::wstring_view wide)
{
    std::string text;
    text.reserve(2 * wide.size()); // enough for most that is not English
    for (const wchar_t c : wide) {
        append(text, static_cast<char32_t>(c));
    }
    return text;
}

std::wstring toWide(std::string_view text)
{
    std::wstring wide(text.size(), L'\0');
    std::size_t length = 0;
    while (!text.empty()) {
        wide[length++] = static_cast<wchar_t>(popFirst(text));
    }
    wide.resize(length);
    return wide;
}

std::optional<std::string> fromUtf8(std::string_view bytes)
{
    if (isPlain(bytes)) {
        return std::string(bytes);
    }
    std::string text;
    text.reserve(bytes.size());
    while (!bytes.empty()) {
        if (!beginsInUtf8(bytes)) {
            return std::nullopt;
        }
        append(text, popFirst(bytes));
    }
    return text;
}

std::optional<std::string> toUtf8(std::string text)
{
    if (holdsValueBeyondUnicode(text)) {
        return std::nullopt;
    }
    return text; // up to there the two are the same
}

std::string fromLocale(std::string_view bytes)
{
    return isPlain(bytes) && qm::CQMTranscoder::IsAnsiAscii()
        ? std::string(bytes)
        : fromWide(qm::CQMTranscoder::AnsiToWide(bytes));
}

std::string toLocale(std::string text)
{
    if (isPlain(text) && qm::CQMTranscoder::IsAnsiAscii()) {
        return text;
    }
    return qm::CQMTranscoder::WideToAnsi(toWide(text));
}

char32_t popFirst(std::string_view& text) noexcept
{
    const auto lead = static_cast<unsigned char>(text.front());
    if (lead < 0x80) {
        text.remove_prefix(1);
        return lead;
    }
    const auto length = static_cast<unsigned>(std::countl_one(lead));
    std::uint64_t value = length < 7 ? lead & (0x7Fu >> length) : 0;
    for (unsigned i = 1; i < length; ++i) {
        value = value << continuationBits | (static_cast<unsigned char>(text[i]) & 0x3F);
    }
    text.remove_prefix(length);
    return static_cast<char32_t>(value);
}

} // namespace format::text
