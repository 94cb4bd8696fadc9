#include "writing/descriptors.h"

#include "common/characters.h"
#include "common/failure.h"
#include "common/names.h"
#include "common/numbers.h"
#include "writing/EditState.h"
#include "writing/newFiles.h"

#include "format/items.h"
#include "format/keys.h"

#include <algorithm>
#include <fmt/ranges.h>

namespace tool::writing {

namespace {

using check::Descriptor;
using check::Entity;
using check::SubstanceTree;
using format::Key;
using format::ToolValueKind;
using format::ValueKind;

const format::DescriptorKind& kindOf(DescriptorOf kind)
{
    switch (kind) {
    case DescriptorOf::Substance:
        return format::substanceKind;
    case DescriptorOf::Phase:
        return format::phaseKind;
    case DescriptorOf::Change:
        return format::phaseChangeKind;
    case DescriptorOf::Description:
        return format::descriptionKind;
    case DescriptorOf::Value:
        break;
    }
    return format::headKind;
}

/// Keys that other files or numbers hang on; they change with what they belong to.
bool isFixed(const format::KeyRule& rule)
{
    constexpr Key others[] = { Key::ID, Key::Name, Key::Comment, Key::Units, Key::Mixture, Key::Composition,
        Key::Data, Key::Type };
    return rule.value == ValueKind::StringId || std::ranges::find(others, rule.key) != std::end(others);
}

/// True when each character is one of the letters.
bool consistsOf(std::string_view text, std::string_view letters)
{
    return text.find_first_not_of(letters) == std::string_view::npos;
}

/// What is wrong with the value of a key; empty when nothing is.
std::string faultOf(ValueKind kind, std::string_view value)
{
    const auto number = asWholeNumber(value);
    switch (kind) {
    case ValueKind::Flag:
        return value == format::trueFlag || value == format::falseFlag ? "" : "write 1 or 0";
    case ValueKind::Types:
        return consistsOf(value, format::typeLetters) ? "" : "write letters of C, t, p, T and X";
    case ValueKind::States:
        return consistsOf(value, format::stateLetters) ? "" : "write letters of S, L and V";
    case ValueKind::State:
        return number && format::isState(*number) ? "" : "write 1 for solid, 2 for liquid or 3 for gas";
    case ValueKind::Number:
        return number ? "" : "write a whole number";
    default:
        return "";
    }
}

std::string faultOf(ToolValueKind kind, std::string_view value)
{
    if (kind == ToolValueKind::CasNumber && !value.empty() && !format::isCasNumber(value)) {
        return "write a CAS number, such as 7732-18-5";
    }
    constexpr std::size_t mostArguments = 2;
    if (kind == ToolValueKind::ArgumentItems && format::splitItems(value).size() > mostArguments) {
        return "write one item for all arguments, or two with \";\" between";
    }
    return "";
}

KeyChange checkedValue(std::string_view key, std::string_view value, const std::string& fault)
{
    if (!fault.empty()) {
        throw Failure("{} cannot be {}: {}", key, shown(value), fault);
    }
    if (!value.empty() && (value.front() == ' ' || value.back() == ' ')) {
        throw Failure("{} begins or ends with a blank, which would be part of it", key);
    }
    return { std::string(key), std::string(value) };
}

/// Throws Failure when another one of the kind shows the name.
template <class All, class DescriptorOf>
void requireFreeName(const EditState& state, const All& all, std::string_view self, const TextChange& change,
    DescriptorOf descriptorOf)
{
    for (const auto& one : all) {
        const Descriptor& other = descriptorOf(one);
        if (other.file() != self
            && displayText(state.tables, other, change.key, change.language) == change.text) {
            throw Failure("the name {} is taken: {} shows it", shown(change.text), other.file());
        }
    }
}

void applyTo(EditState& state, DescriptorText& text, const DescriptorChange& change)
{
    for (const TextChange& one : change.texts) {
        setDisplayText(state.tables, text, one.key, one.language, one.text);
    }
    applyKeys(text, change.keys);
}

void applyChange(EditState& state, const Descriptor& file, const DescriptorChange& change)
{
    DescriptorText text = DescriptorText::read(state.directory, file.file());
    const std::string before = text.bytes();
    applyTo(state, text, change);
    if (text.bytes() != before) {
        replaceDescriptor(state, file.file(), text);
    }
}

template <class All, class DescriptorOf>
void requireFreeNames(const EditState& state, const All& all, std::string_view self,
    const DescriptorChange& change, DescriptorOf descriptorOf)
{
    for (const TextChange& one : change.texts) {
        if (one.key == TextKey::Name) {
            requireFreeName(state, all, self, one, descriptorOf);
        }
    }
}

/// Throws Failure when a value is of a type or a form that a description allows no more.
void requireValuesFit(const EditState& state, const Descriptor& before, const DescriptorText& after)
{
    const std::string types = after.text(textOf(Key::DataTypes)).value_or("");
    forEachHead(state.tree, [&](const Entity&, const Descriptor& head) {
        const Key form = head.flag(Key::Vector) ? Key::Vector : Key::Scalar;
        const auto type = static_cast<PARAM_TYPE>(head.number(Key::Type));
        const bool fits
            = format::isAmong(format::letterOf(type), types) && after.text(textOf(form)) == format::trueFlag;
        if (head.number(Key::ID) == before.number(Key::ID) && !fits) {
            throw Failure("{} has a value of a type or form that the description would not allow any more; "
                          "remove it or allow it",
                head.file());
        }
    });
}

} // namespace

KeyChange checkedKey(DescriptorOf kind, std::string_view key, std::string_view value)
{
    const format::DescriptorKind& described = kindOf(kind);
    std::vector<std::string_view> keys;
    for (const format::ToolKeyRule& rule : described.toolKeys) {
        if (rule.key == key) {
            return checkedValue(key, value, faultOf(rule.value, value));
        }
        keys.push_back(rule.key);
    }
    for (const format::KeyRule& rule : described.keys) {
        const bool fixed = isFixed(rule) || (kind == DescriptorOf::Value && rule.key == Key::Vector);
        if (!fixed && textOf(rule.key) == key) {
            return checkedValue(key, value, faultOf(rule.value, value));
        }
        if (!fixed) {
            keys.push_back(textOf(rule.key));
        }
    }
    throw Failure("{} is no key that can be set here; there are: {}", shown(key), fmt::join(keys, ", "));
}

void applyKeys(DescriptorText& descriptor, const std::vector<KeyChange>& keys)
{
    for (const KeyChange& change : keys) {
        const auto known = format::findKey(change.key);
        // The library's own keys may be needed, even with nothing in them.
        known ? descriptor.set(change.key, change.value) : descriptor.setOrRemove(change.key, change.value);
    }
}

namespace {

/// Throws Failure when another owner beside the one in a file shows a new name.
void requireFreeOwnerNames(const EditState& state, long substance, Owner::Kind kind, std::string_view self,
    const DescriptorChange& change)
{
    if (kind == Owner::Kind::Substance) {
        return requireFreeNames(state, state.tree.substances, self, change,
            [](const SubstanceTree& one) -> const Descriptor& { return one.self.descriptor; });
    }
    const SubstanceTree& files = substanceFiles(state, substance);
    requireFreeNames(
        state, kind == Owner::Kind::Phase ? files.phases : files.changes, self, change, ofEntity);
}

} // namespace

void changeOwner(Edit& edit, long substance, const Owner& owner, const DescriptorChange& change)
{
    EditState& state = edit.state();
    const Descriptor& file = ownerFiles(state, substance, owner).descriptor;
    requireFreeOwnerNames(state, substance, owner.kind, file.file(), change);
    applyChange(state, file, change);
}

void requireNewOwnerFits(Edit& edit, long substance, Owner::Kind kind, const DescriptorChange& change)
{
    requireFreeOwnerNames(edit.state(), substance, kind, {}, change);
    DescriptorText text;
    applyTo(edit.state(), text, change);
    static_cast<void>(edit.changes()); // reads the string tables that would change
}

void changeDescription(Edit& edit, long description, const DescriptorChange& change)
{
    EditState& state = edit.state();
    const Descriptor& file = descriptionFile(state, description);
    requireFreeNames(state, state.tree.descriptions, file.file(), change,
        [](const Descriptor& one) -> const Descriptor& { return one; });
    DescriptorText after = DescriptorText::read(state.directory, file.file());
    applyKeys(after, change.keys);
    if (!change.keys.empty()) {
        requireValuesFit(state, file, after);
    }
    applyChange(state, file, change);
}

namespace {

/// "Young's modulus" as "youngs-modulus"; "parameter" where nothing is left.
std::string fileStem(std::string_view name)
{
    std::string stem;
    for (const char character : lowerCase(name)) {
        const bool plain = (character >= 'a' && character <= 'z') || (character >= '0' && character <= '9');
        if (plain) {
            stem += character;
        } else if ((character == ' ' || character == '-') && !stem.empty() && stem.back() != '-') {
            stem += '-';
        }
    }
    stem.erase(stem.find_last_not_of('-') + 1);
    return stem.empty() ? "parameter" : stem;
}

long nextId(const std::vector<Descriptor>& all)
{
    long highest = 0;
    for (const Descriptor& one : all) {
        highest = std::max(highest, one.number(Key::ID));
    }
    return highest + 1;
}

} // namespace

std::string makeDescription(EditState& state, long id, const NewDescription& description)
{
    DescriptorText text;
    text.set(textOf(Key::AvForPhases), description.states);
    text.set(textOf(Key::Binary), format::falseFlag);
    text.set(textOf(Key::DataTypes), description.types);
    text.set(textOf(Key::ID), std::to_string(id));
    text.set(textOf(Key::Scalar), description.scalar ? format::trueFlag : format::falseFlag);
    text.set(textOf(Key::Vector), description.vector ? format::trueFlag : format::falseFlag);
    setNewTexts(state.tables, text, TextKey::Name, description.name, description.russianName);
    setNewTexts(state.tables, text, TextKey::Units, description.units, description.russianUnits);
    applyKeys(text, description.keys);
    std::string file = state.names.nextFile(fileStem(description.name), format::descriptionExtension);
    state.changes.makeFile(file, text.bytes());
    return file;
}

long addDescription(Edit& edit, const NewDescription& description)
{
    EditState& state = edit.state();
    for (const Descriptor& other : state.tree.descriptions) {
        if (description.id && other.number(Key::ID) == *description.id) {
            throw Failure("the number {} is taken: {} has it", *description.id, other.file());
        }
        for (const auto& [language, name] : { std::pair { Language::Default, description.name },
                 std::pair { Language::Russian, description.russianName } }) {
            if (!name.empty() && displayText(state.tables, other, TextKey::Name, language) == name) {
                throw Failure("the name {} is taken: {} shows it", shown(name), other.file());
            }
        }
    }
    const long id = description.id.value_or(nextId(state.tree.descriptions));
    makeDescription(state, id, description);
    return id;
}

std::vector<Description> descriptionsOf(const Edit& edit)
{
    const EditState& state = edit.state();
    std::vector<Description> descriptions;
    for (const Descriptor& file : state.tree.descriptions) {
        descriptions.push_back(
            { file.number(Key::ID), displayText(state.tables, file, TextKey::Name, state.language),
                displayText(state.tables, file, TextKey::Units, state.language), file.flag(Key::Scalar),
                file.flag(Key::Vector), file.text(Key::DataTypes) });
    }
    std::ranges::stable_sort(descriptions, {}, &Description::id);
    return descriptions;
}

namespace {

/// The Russian text of a descriptor where it is not the one that the default table shows.
std::string russianText(const EditState& state, const Descriptor& file, TextKey key)
{
    std::string russian = displayText(state.tables, file, key, Language::Russian);
    return russian == displayText(state.tables, file, key, Language::Default) ? std::string() : russian;
}

} // namespace

std::vector<NewDescription> describedParameters(const Edit& edit)
{
    const EditState& state = edit.state();
    std::vector<NewDescription> all;
    for (const Descriptor& file : state.tree.descriptions) {
        std::vector<KeyChange> keys;
        for (const format::ToolKeyRule& rule : format::descriptionKind.toolKeys) {
            if (file.has(rule.key)) {
                keys.push_back({ std::string(rule.key), file.text(rule.key) });
            }
        }
        all.push_back({ file.number(Key::ID), displayText(state.tables, file, TextKey::Name, state.language),
            russianText(state, file, TextKey::Name),
            displayText(state.tables, file, TextKey::Units, state.language),
            russianText(state, file, TextKey::Units), file.text(Key::DataTypes), file.text(Key::AvForPhases),
            file.flag(Key::Scalar), file.flag(Key::Vector), std::move(keys) });
    }
    std::ranges::stable_sort(all, {}, &NewDescription::id);
    return all;
}

std::string russianText(const Edit& edit, long substance, const Owner& owner, TextKey key)
{
    const EditState& state = edit.state();
    return russianText(state, ownerFiles(state, substance, owner).descriptor, key);
}

std::string descriptionKey(const Edit& edit, long description, std::string_view key)
{
    return descriptionFile(edit.state(), description).text(key);
}

} // namespace tool::writing
