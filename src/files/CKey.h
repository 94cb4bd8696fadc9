#pragma once

#include <array>
#include <cstddef>
#include <string_view>

/// A key of a descriptor. The keys that the format itself knows have a code, which their constants
/// carry from compile time on, so that a map need not compare texts to find them.
class CKey {
public:
    static constexpr unsigned char otherKey = 0xFF;

    // Any text is a key.
    constexpr CKey(std::string_view text) noexcept // NOLINT(google-explicit-constructor)
        : text_(text)
        , code_(codeOf(text))
    {
    }
    constexpr CKey(const char* text) noexcept // NOLINT(google-explicit-constructor)
        : CKey(std::string_view(text))
    {
    }

    constexpr std::string_view text() const noexcept { return text_; }
    /// The position among the known keys, which are in ascending order; otherKey for all others.
    constexpr unsigned char code() const noexcept { return code_; }

    static constexpr std::string_view textOf(unsigned char code) noexcept { return knownKeys[code]; }

private:
    static constexpr std::array<std::string_view, 19> knownKeys = { "Aggreg", "AvForPhases", "Binary",
        "Comment", "CommentID", "Composition", "Data", "DataTypes", "ID", "Mixture", "Name", "NameID",
        "Phase1", "Phase2", "Scalar", "Type", "Units", "UnitsID", "Vector" };
    static constexpr std::size_t hashSlots = 64;

    /// Tells the known keys apart; two with one hash would not compile.
    static constexpr std::size_t hashOf(std::string_view key) noexcept
    {
        const auto first = static_cast<unsigned char>(key.front());
        const auto last = static_cast<unsigned char>(key.back());
        return (key.size() + first + last) % hashSlots;
    }

    static constexpr std::array<unsigned char, hashSlots> makeCodes()
    {
        std::array<unsigned char, hashSlots> table {};
        table.fill(otherKey);
        for (std::size_t i = 0; i < knownKeys.size(); ++i) {
            unsigned char& code = table.at(hashOf(knownKeys[i]));
            code = code == otherKey ? static_cast<unsigned char>(i) : throw "two known keys have one hash";
        }
        return table;
    }

    static constexpr unsigned char codeOf(std::string_view key) noexcept;

    std::string_view text_;
    unsigned char code_;
};

constexpr unsigned char CKey::codeOf(std::string_view key) noexcept
{
    constexpr std::array<unsigned char, hashSlots> codes = makeCodes();
    if (key.empty()) {
        return otherKey;
    }
    const unsigned char code = codes[hashOf(key)];
    if (code == otherKey || knownKeys[code].size() != key.size()) {
        return otherKey;
    }
    // Keys are a few characters long: a loop beats a call.
    bool same = true;
    for (std::size_t i = 0; i < key.size(); ++i) {
        same = same && knownKeys[code][i] == key[i];
    }
    return same ? code : otherKey;
}
