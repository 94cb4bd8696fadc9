#pragma once

#include "database/entities.h"
#include "writing/Edit.h"

#include <optional>
#include <string>
#include <vector>

namespace tool::writing {

/// A new text of a descriptor in one language.
struct TextChange {
    TextKey key {};
    Language language {};
    std::string text;
};

/// A new value of a key; an empty one removes the key.
struct KeyChange {
    std::string key;
    std::string value;
};

struct DescriptorChange {
    std::vector<TextChange> texts;
    std::vector<KeyChange> keys;

    bool isEmpty() const noexcept { return texts.empty() && keys.empty(); }
};

/// The kinds of descriptors whose keys people change.
enum class DescriptorOf : std::uint8_t { Substance, Phase, Change, Description, Value };

/// A key and its value, checked by the rules of the format. Throws Failure for a key that descriptors of the
/// kind do not have, or that is not to be changed by itself, and for a value that is none for the key.
KeyChange checkedKey(DescriptorOf kind, std::string_view key, std::string_view value);

/// Throws Failure when a new name is taken by another one of the kind.
void changeOwner(Edit& edit, long substance, const Owner& owner, const DescriptorChange& change);
void changeDescription(Edit& edit, long description, const DescriptorChange& change);

/// Throws Failure when what is about to be added could not be changed so afterwards. The edit is spent then.
/// `substance` is that of a new phase or phase change.
void requireNewOwnerFits(Edit& edit, long substance, Owner::Kind kind, const DescriptorChange& change);

struct NewDescription {
    std::optional<long> id; ///< the next one when not given
    std::string name;
    std::string russianName;
    std::string units;
    std::string russianUnits;
    std::string types;
    std::string states;
    bool scalar = true;
    bool vector = false;
    std::vector<KeyChange> keys;
};

/// Returns the new number.
long addDescription(Edit& edit, const NewDescription& description);

/// The parameters that a database describes, with their names and units in the language of the edit.
std::vector<Description> descriptionsOf(const Edit& edit);

/// The descriptions whole, by number; Russian texts are empty where they are the same.
std::vector<NewDescription> describedParameters(const Edit& edit);

/// The Russian text of a substance, a phase or a phase change; empty where it is the same as the other.
std::string russianText(const Edit& edit, long substance, const Owner& owner, TextKey key);

/// The text of a key of a description; empty when it has none.
std::string descriptionKey(const Edit& edit, long description, std::string_view key);

/// These throw Failure, saying what it is, when something refers to what should go.
void removeSubstance(Edit& edit, long substance);
void removeOwner(Edit& edit, long substance, const Owner& owner);
void removeDescription(Edit& edit, long description);

} // namespace tool::writing
