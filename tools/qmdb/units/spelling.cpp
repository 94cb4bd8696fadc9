#include "units/spelling.h"

#include "common/encodings.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

namespace tool {

namespace {

using Pair = std::pair<std::wstring_view, std::wstring_view>;

constexpr Pair russianUnits[] = { { L"м", L"m" }, { L"г", L"g" }, { L"т", L"t" }, { L"с", L"s" },
    { L"мин", L"min" }, { L"ч", L"h" }, { L"сут", L"d" }, { L"К", L"K" }, { L"моль", L"mol" }, { L"А", L"A" },
    { L"Н", L"N" }, { L"Па", L"Pa" }, { L"бар", L"bar" }, { L"атм", L"atm" }, { L"ат", L"at" },
    { L"кгс", L"kgf" }, { L"Дж", L"J" }, { L"кал", L"cal" }, { L"эВ", L"eV" }, { L"Вт", L"W" },
    { L"В", L"V" }, { L"Ом", L"ohm" }, { L"См", L"S" }, { L"Ф", L"F" }, { L"Кл", L"C" }, { L"Гн", L"H" },
    { L"Тл", L"T" }, { L"Вб", L"Wb" }, { L"Гц", L"Hz" }, { L"рад", L"rad" }, { L"град", L"degree" },
    { L"л", L"L" }, { L"П", L"P" }, { L"Ст", L"St" } };

constexpr Pair russianPrefixes[]
    = { { L"мк", L"u" }, { L"да", L"da" }, { L"Г", L"G" }, { L"М", L"M" }, { L"Т", L"T" }, { L"к", L"k" },
          { L"г", L"h" }, { L"д", L"d" }, { L"с", L"c" }, { L"м", L"m" }, { L"н", L"n" }, { L"п", L"p" } };

/// Signs that are written in several ways.
constexpr std::pair<wchar_t, wchar_t> signs[]
    = { { L'⋅', L'·' }, { L'∙', L'·' }, { L'•', L'·' }, { L'×', L'·' }, { L'−', L'-' }, { L'–', L'-' },
          { L'º', L'°' }, { L'\u00A0', L' ' }, { L'\u202F', L' ' } };

constexpr std::pair<std::wstring_view, std::wstring_view> wholeTexts[] = { { L"мм рт. ст.", L"mmHg" },
    { L"мм рт.ст.", L"mmHg" }, { L"°С", L"degC" }, { L"°C", L"degC" }, { L"°F", L"degF" } };

constexpr std::wstring_view superscripts = L"⁰¹²³⁴⁵⁶⁷⁸⁹⁺⁻";
constexpr std::wstring_view superscriptMeanings = L"0123456789+-";

bool isRussian(wchar_t character)
{
    return (character >= L'А' && character <= L'я') || character == L'ё' || character == L'Ё';
}

std::optional<std::wstring> unitOf(std::wstring_view symbol)
{
    const auto found = std::ranges::find(russianUnits, symbol, &Pair::first);
    return found == std::end(russianUnits) ? std::nullopt : std::optional(std::wstring(found->second));
}

/// A Russian symbol in Latin letters; as it stands when there is none.
std::wstring latin(std::wstring_view symbol)
{
    if (const auto unit = unitOf(symbol)) {
        return *unit;
    }
    for (const auto& [prefix, meaning] : russianPrefixes) {
        const auto unit = symbol.starts_with(prefix) ? unitOf(symbol.substr(prefix.size())) : std::nullopt;
        if (unit) {
            return std::wstring(meaning) + *unit;
        }
    }
    return std::wstring(symbol);
}

bool isLatin(wchar_t character)
{
    return (character >= L'A' && character <= L'Z') || (character >= L'a' && character <= L'z');
}

std::optional<std::wstring> russianOf(std::wstring_view symbol)
{
    const auto found = std::ranges::find(russianUnits, symbol, &Pair::second);
    return found == std::end(russianUnits) ? std::nullopt : std::optional(std::wstring(found->first));
}

/// A Latin symbol in Russian letters; as it stands when there is none.
std::wstring russian(std::wstring_view symbol)
{
    if (const auto unit = russianOf(symbol)) {
        return *unit;
    }
    for (const auto& [meaning, prefix] : russianPrefixes) {
        const auto unit = symbol.starts_with(prefix) ? russianOf(symbol.substr(prefix.size())) : std::nullopt;
        if (unit) {
            return std::wstring(meaning) + *unit;
        }
    }
    return std::wstring(symbol);
}

/// The text with each run of certain letters replaced.
std::wstring withRunsReplaced(
    std::wstring_view text, bool (*isOfRun)(wchar_t), std::wstring (*replacement)(std::wstring_view))
{
    std::wstring result;
    while (!text.empty()) {
        const auto end = std::ranges::find_if_not(text, isOfRun);
        const auto length = static_cast<std::size_t>(end - text.begin());
        result += length > 0 ? replacement(text.substr(0, length)) : std::wstring(1, text.front());
        text.remove_prefix(std::max(length, std::size_t(1)));
    }
    return result;
}

void replaceAll(std::wstring& text, std::wstring_view from, std::wstring_view to)
{
    for (std::size_t at = 0; (at = text.find(from, at)) != std::wstring::npos; at += to.size()) {
        text.replace(at, from.size(), to);
    }
}

std::wstring withUsualSigns(std::wstring text)
{
    for (const auto& [from, to] : signs) {
        std::ranges::replace(text, from, to);
    }
    for (const auto& [from, to] : wholeTexts) {
        replaceAll(text, from, to);
    }
    return text;
}

bool isSuperscript(wchar_t character)
{
    return superscripts.find(character) != std::wstring_view::npos;
}

/// "^-3" of "⁻³".
std::wstring exponent(std::wstring_view run)
{
    std::wstring text = L"^";
    for (const wchar_t character : run) {
        text += superscriptMeanings[superscripts.find(character)];
    }
    return text;
}

} // namespace

std::string spelledForUdunits(std::string_view units)
{
    const std::wstring text = withUsualSigns(toWide(units));
    return toUtf8(withRunsReplaced(withRunsReplaced(text, isSuperscript, exponent), isRussian, latin));
}

std::string spelledInRussian(std::string_view units)
{
    std::wstring text = toWide(units);
    std::ranges::replace(text, L'µ', L'u');
    return toUtf8(withRunsReplaced(text, isLatin, russian));
}

} // namespace tool
