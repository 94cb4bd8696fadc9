#include "help/TypedLine.h"

namespace tool {

namespace {

constexpr char single = '\'';
constexpr char twofold = '"';
constexpr char escape = '\\';
constexpr std::string_view escapedInQuotes = "\"\\$`";
constexpr std::string_view plain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_@%+=:,./-";

bool isPlain(char character)
{
    return (character & '\x80') || plain.find(character) != plain.npos;
}

} // namespace

TypedLine::TypedLine(std::string_view line, std::string_view breaks)
{
    bool between = true;
    for (std::size_t i = 0; i < line.size(); ++i) {
        const char character = line[i];
        if (character == ' ' || character == '\t') {
            if (!between) {
                words_.emplace_back();
                kept_ = 0;
            }
            between = true;
            continue;
        }
        between = false;
        if (character == single || character == twofold) {
            i = takeQuoted(line, i);
            continue;
        }
        if (character == escape && i + 1 < line.size()) {
            words_.back() += line[++i];
            continue;
        }
        words_.back() += character;
        kept_ = breaks.find(character) == breaks.npos ? kept_ : words_.back().size();
    }
}

/// Returns where the closing quote stands, or the end of the line.
std::size_t TypedLine::takeQuoted(std::string_view line, std::size_t begin)
{
    const char quote = line[begin];
    const std::size_t before = words_.back().size();
    std::size_t i = begin + 1;
    for (; i < line.size() && line[i] != quote; ++i) {
        const bool escapes = quote == twofold && line[i] == escape && i + 1 < line.size()
            && escapedInQuotes.find(line[i + 1]) != escapedInQuotes.npos;
        words_.back() += line[escapes ? ++i : i];
    }
    if (i >= line.size()) {
        quote_ = quote;
        kept_ = before;
    }
    return i;
}

std::string TypedLine::replacement(std::string_view word) const
{
    std::string text;
    for (const char character : word.substr(kept_ < word.size() ? kept_ : word.size())) {
        if (quote_ == single && character == single) {
            text += "'\\'";
        } else if (quote_ == twofold ? escapedInQuotes.find(character) != escapedInQuotes.npos
                                     : quote_ != single && !isPlain(character)) {
            text += escape;
        }
        text += character;
    }
    return text;
}

} // namespace tool
