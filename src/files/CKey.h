#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace detail {

/// The keys that the format knows, in ascending order.
inline constexpr std::array<std::string_view, 19> knownKeys
    = { "Aggreg", "AvForPhases", "Binary", "Comment", "CommentID", "Composition", "Data", "DataTypes", "ID",
          "Mixture", "Name", "NameID", "Phase1", "Phase2", "Scalar", "Type", "Units", "UnitsID", "Vector" };
constexpr unsigned char otherKey = 0xFF;
constexpr std::size_t keyHashSlots = 64;

/// Tells the known keys apart; two with one hash would not compile.
constexpr std::size_t keyHash(std::string_view key) noexcept
{
    const auto first = static_cast<unsigned char>(key.front());
    const auto last = static_cast<unsigned char>(key.back());
    return (key.size() + first + last) % keyHashSlots;
}

constexpr std::array<unsigned char, keyHashSlots> makeKeyCodes()
{
    std::array<unsigned char, keyHashSlots> table {};
    table.fill(otherKey);
    for (std::size_t i = 0; i < knownKeys.size(); ++i) {
        unsigned char& code = table.at(keyHash(knownKeys[i]));
        code = code == otherKey ? static_cast<unsigned char>(i) : throw "two known keys have one hash";
    }
    return table;
}

inline constexpr std::array<unsigned char, keyHashSlots> keyCodes = makeKeyCodes();

} // namespace detail

/// A key of a descriptor. The keys that the format itself knows have a code, which their constants
/// carry from compile time on, so that a map need not compare texts to find them.
class CKey {
public:
    static constexpr unsigned char otherKey = detail::otherKey;

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
    /// The position among the known keys; otherKey for all others.
    constexpr unsigned char code() const noexcept { return code_; }

    static constexpr std::string_view textOf(unsigned char code) noexcept { return detail::knownKeys[code]; }

private:
    static constexpr unsigned char codeOf(std::string_view key) noexcept
    {
        const unsigned char code = key.empty() ? otherKey : detail::keyCodes[detail::keyHash(key)];
        return code != otherKey && textOf(code) == key ? code : otherKey;
    }

    std::string_view text_;
    unsigned char code_;
};
