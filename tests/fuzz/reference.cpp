#include "reference.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cwchar>

#include <locale.h>

namespace reference {

namespace {

constexpr std::size_t mostBytes = 1022; // of a line

/// Runs a call as if the locale was "C".
template <class Call>
auto plainly(Call&& call)
{
    static const locale_t plain = ::newlocale(LC_ALL_MASK, "C", locale_t {});
    const locale_t before = ::uselocale(plain);
    const auto result = call();
    ::uselocale(before);
    return result;
}

} // namespace

std::vector<Line> cut(std::string_view file)
{
    std::vector<Line> lines;
    std::string bytes;
    for (const char c : file) {
        if (c == '\n') {
            lines.push_back({ bytes });
            bytes.clear();
        } else if (bytes.size() == mostBytes) {
            lines.push_back({ bytes, true });
            return lines;
        } else {
            bytes += c;
        }
    }
    lines.push_back({ bytes, false, true });
    return lines;
}

std::optional<std::wstring> fromUtf8(std::string_view bytes)
{
    std::wstring text;
    for (std::size_t i = 0; i < bytes.size();) {
        const unsigned lead = static_cast<unsigned char>(bytes[i++]);
        int more = 0;
        unsigned value = lead;
        if ((lead & 0xE0) == 0xC0) {
            more = 1;
            value = lead & 0x1F;
        } else if ((lead & 0xF0) == 0xE0) {
            more = 2;
            value = lead & 0x0F;
        } else if ((lead & 0xF8) == 0xF0) {
            more = 3;
            value = lead & 0x07;
        } else if (lead >= 0x80) {
            return std::nullopt;
        }
        for (; more > 0; --more) {
            if (i == bytes.size() || (static_cast<unsigned char>(bytes[i]) & 0xC0) != 0x80) {
                return std::nullopt;
            }
            value = value * 64 + (static_cast<unsigned char>(bytes[i++]) & 0x3F);
        }
        text += static_cast<wchar_t>(value);
    }
    return text;
}

std::optional<std::string> toUtf8(std::wstring_view text)
{
    std::string bytes;
    for (const wchar_t c : text) {
        const auto value = static_cast<char32_t>(c);
        const auto put = [&](char32_t byte) { bytes += static_cast<char>(byte); };
        if (value < 0x80) {
            put(value);
        } else if (value < 0x800) {
            put(0xC0 + value / 64);
            put(0x80 + value % 64);
        } else if (value < 0x10000) {
            put(0xE0 + value / 4096);
            put(0x80 + value / 64 % 64);
            put(0x80 + value % 64);
        } else if (value < 0x110000) {
            put(0xF0 + value / 262144);
            put(0x80 + value / 4096 % 64);
            put(0x80 + value / 64 % 64);
            put(0x80 + value % 64);
        } else {
            return std::nullopt;
        }
    }
    return bytes;
}

std::wstring fromLocale(std::string_view bytes)
{
    const std::string source(bytes);
    std::wstring text(source.size() + 1, L'\0');
    const std::size_t length = std::mbstowcs(text.data(), source.c_str(), text.size());
    text.resize(length == static_cast<std::size_t>(-1) ? 0 : length);
    return text;
}

std::string toLocale(const std::wstring& text)
{
    std::string bytes(text.size() * MB_CUR_MAX + 1, '\0');
    const std::size_t length = std::wcstombs(bytes.data(), text.c_str(), bytes.size());
    bytes.resize(length == static_cast<std::size_t>(-1) ? 0 : length);
    return bytes;
}

std::wstring decode(std::string_view line, bool utf8)
{
    line = line.substr(0, line.find('\0'));
    std::optional<std::wstring> decoded = utf8 ? fromUtf8(line) : std::nullopt;
    std::wstring text = decoded ? *decoded : fromLocale(line);
    if (!text.empty() && text.back() == L'\r') {
        text.pop_back();
    }
    return text;
}

std::optional<Number> number(std::wstring text)
{
    if (const std::size_t comma = text.find(L','); comma != std::wstring::npos) {
        text[comma] = L'.';
    }
    double value = 0;
    int end = 0;
    const int found = plainly([&] { return std::swscanf(text.c_str(), L"%lg%n", &value, &end); });
    return found == 1 ? std::optional(Number { value, static_cast<std::size_t>(end) }) : std::nullopt;
}

long whole(const std::wstring& text)
{
    long value = 0;
    return plainly([&] { return std::swscanf(text.c_str(), L"%ld", &value); }) == 1 ? value : 0;
}

std::string written(double value)
{
    std::array<char, 100> buffer;
    const int length = plainly([&] { return std::snprintf(buffer.data(), buffer.size(), "%lg", value); });
    return { buffer.data(), static_cast<std::size_t>(length) };
}

std::vector<std::wstring> split(const std::wstring& row)
{
    std::vector<std::wstring> tokens;
    std::size_t start = 0;
    while (row.size() > 1 && start + 1 < row.size() && row[start] == L' ') {
        ++start;
    }
    std::size_t end = row.find(L' ', start);
    if (end == std::wstring::npos) {
        return tokens;
    }
    while (start < row.size()) {
        std::size_t run = end; // its last blank, or the end of the row
        while (run + 1 < row.size() && row[run + 1] == L' ') {
            ++run;
        }
        std::wstring token = row.substr(start, run - start);
        std::erase(token, L' ');
        tokens.push_back(token);
        start = run + 1;
        end = std::min(row.find(L' ', start), row.size());
    }
    return tokens;
}

bool same(double a, double b)
{
    return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

} // namespace reference
