#pragma once

#include "format/vocabulary.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

/// The keys of descriptors, and which kind of descriptor has which. Keys are case-sensitive; one that
/// is not among those of Key is kept and means nothing to the library.
namespace format {

/// The keys that mean something, in ascending order of their texts.
enum class Key : unsigned char {
    Aggreg,
    AvForPhases,
    Binary,
    Comment,
    CommentID,
    Composition,
    Data,
    DataTypes,
    ID,
    Mixture,
    Name,
    NameID,
    Phase1,
    Phase2,
    Scalar,
    Type,
    Units,
    UnitsID,
    Vector,
};

inline constexpr std::array<std::string_view, 19> keyTexts
    = { "Aggreg", "AvForPhases", "Binary", "Comment", "CommentID", "Composition", "Data", "DataTypes", "ID",
          "Mixture", "Name", "NameID", "Phase1", "Phase2", "Scalar", "Type", "Units", "UnitsID", "Vector" };

static_assert(std::ranges::is_sorted(keyTexts));
static_assert(keyTexts.size() == static_cast<std::size_t>(Key::Vector) + 1);

// The keys that tools have defined.
inline constexpr std::string_view formulaKey = "Formula"; ///< of substances
inline constexpr std::string_view aliasesKey = "Aliases";
inline constexpr std::string_view casKey = "CAS";
inline constexpr std::string_view symbolKey = "Symbol"; ///< of descriptions
inline constexpr std::string_view argumentUnitsKey = "ArgumentUnits";
inline constexpr std::string_view argumentNameKey = "ArgumentName";
inline constexpr std::string_view sourceKey = "Source"; ///< of heads
inline constexpr std::string_view accuracyKey = "Accuracy";

constexpr std::string_view textOf(Key key) noexcept
{
    return keyTexts[static_cast<std::size_t>(key)];
}

namespace detail {

/// Where the keys of each first letter begin, from "A" to the one after "Z": half the time of a search.
inline constexpr auto firstOfLetter = [] {
    std::array<unsigned char, 27> first {};
    for (std::size_t letter = 0; letter < first.size(); ++letter) {
        const auto before
            = [&](std::string_view key) { return key.front() < static_cast<char>('A' + letter); };
        first.at(letter) = static_cast<unsigned char>(std::ranges::count_if(keyTexts, before));
    }
    return first;
}();

} // namespace detail

constexpr std::optional<Key> findKey(std::string_view text) noexcept
{
    const std::size_t letter
        = text.empty() ? std::string_view::npos : static_cast<std::size_t>(text.front() - 'A');
    if (letter >= detail::firstOfLetter.size() - 1) {
        return std::nullopt;
    }
    for (std::size_t i = detail::firstOfLetter[letter]; i < detail::firstOfLetter[letter + 1]; ++i) {
        if (keyTexts[i] == text) {
            return static_cast<Key>(i);
        }
    }
    return std::nullopt;
}

/// A set of keys.
class KeySet {
public:
    constexpr void add(Key key) noexcept { bits_ |= bitOf(key); }
    constexpr void remove(Key key) noexcept { bits_ &= ~bitOf(key); }
    constexpr bool isEmpty() const noexcept { return bits_ == 0; }

private:
    static constexpr std::uint32_t bitOf(Key key) noexcept
    {
        return std::uint32_t { 1 } << static_cast<unsigned>(key);
    }

    std::uint32_t bits_ = 0;
};

static_assert(keyTexts.size() <= 32, "a set of keys needs more bits");

/// What the value of a key is.
enum class ValueKind : unsigned char {
    Text,
    Number, ///< a whole number, read with "%ld": 0 when there is none
    StringId, ///< the number of a text in the string table, as decimal digits
    Flag,
    Types, ///< letters of typeLetters
    States, ///< letters of stateLetters
    State, ///< a MATTER_STATE
    Type, ///< a PARAM_TYPE
    FileName,
};

struct KeyRule {
    Key key;
    ValueKind value;
    bool required;
};

/// What the value of a key that tools have defined is.
enum class ToolValueKind : unsigned char {
    Text,
    Items, ///< texts with itemSeparator between
    ArgumentItems, ///< one or two such texts about the arguments of tables
    CasNumber,
};

/// A key that tools read and the library ignores; none is required.
struct ToolKeyRule {
    std::string_view key;
    ToolValueKind value;
};

/// One kind of descriptor: the extension of its files, where they lie, and their keys.
struct DescriptorKind {
    std::string_view extension;
    /// Each in a directory of its own, one level below where it is looked for; else right there.
    bool hasDirectory;
    /// Its owner is nothing without one.
    bool needed;
    std::span<const KeyRule> keys;
    std::span<const ToolKeyRule> toolKeys {};

    constexpr KeySet requiredKeys() const noexcept
    {
        KeySet required;
        for (const KeyRule& rule : keys) {
            if (rule.required) {
                required.add(rule.key);
            }
        }
        return required;
    }
};

namespace detail {

inline constexpr bool required = true;
inline constexpr bool optional = false;

inline constexpr KeyRule substanceKeys[] = {
    { Key::ID, ValueKind::Number, required },
    { Key::Name, ValueKind::Text, required },
    { Key::Mixture, ValueKind::Number, required },
    { Key::Composition, ValueKind::Text, required },
    { Key::NameID, ValueKind::StringId, optional },
    { Key::Comment, ValueKind::Text, optional },
    { Key::CommentID, ValueKind::StringId, optional },
};
inline constexpr KeyRule phaseKeys[] = {
    { Key::ID, ValueKind::Number, required },
    { Key::Name, ValueKind::Text, required },
    { Key::Aggreg, ValueKind::State, required },
    { Key::NameID, ValueKind::StringId, optional },
};
inline constexpr KeyRule phaseChangeKeys[] = {
    { Key::ID, ValueKind::Number, required },
    { Key::Name, ValueKind::Text, required },
    { Key::Phase1, ValueKind::Number, required },
    { Key::Phase2, ValueKind::Number, required },
    { Key::NameID, ValueKind::StringId, optional },
};
inline constexpr KeyRule descriptionKeys[] = {
    { Key::ID, ValueKind::Number, required },
    { Key::Name, ValueKind::Text, required },
    { Key::Units, ValueKind::Text, required },
    { Key::Binary, ValueKind::Flag, required },
    { Key::NameID, ValueKind::StringId, optional },
    { Key::UnitsID, ValueKind::StringId, optional },
    { Key::Scalar, ValueKind::Flag, optional },
    { Key::Vector, ValueKind::Flag, optional },
    { Key::AvForPhases, ValueKind::States, optional },
    { Key::DataTypes, ValueKind::Types, optional },
};
inline constexpr KeyRule headKeys[] = {
    { Key::ID, ValueKind::Number, required },
    { Key::Vector, ValueKind::Flag, required },
    { Key::Type, ValueKind::Type, required },
    { Key::Data, ValueKind::FileName, required },
};

inline constexpr ToolKeyRule substanceToolKeys[] = {
    { formulaKey, ToolValueKind::Text },
    { aliasesKey, ToolValueKind::Items },
    { casKey, ToolValueKind::CasNumber },
};
inline constexpr ToolKeyRule descriptionToolKeys[] = {
    { symbolKey, ToolValueKind::Text },
    { argumentUnitsKey, ToolValueKind::ArgumentItems },
    { argumentNameKey, ToolValueKind::ArgumentItems },
};
inline constexpr ToolKeyRule headToolKeys[] = {
    { sourceKey, ToolValueKind::Text },
    { accuracyKey, ToolValueKind::Text },
};

} // namespace detail

inline constexpr DescriptorKind substanceKind { substanceExtension, true, false, detail::substanceKeys,
    detail::substanceToolKeys };
inline constexpr DescriptorKind phaseKind { phaseExtension, true, true, detail::phaseKeys };
inline constexpr DescriptorKind phaseChangeKind { phaseChangeExtension, true, false,
    detail::phaseChangeKeys };
inline constexpr DescriptorKind descriptionKind { descriptionExtension, false, false, detail::descriptionKeys,
    detail::descriptionToolKeys };
inline constexpr DescriptorKind headKind { headExtension, false, false, detail::headKeys,
    detail::headToolKeys };

} // namespace format
