#include "check/keys.h"

#include "common/names.h"
#include "common/numbers.h"
#include "common/shown.h"

#include <algorithm>
#include <charconv>
#include <fmt/format.h>
#include <span>

namespace tool::check {

namespace {

/// What a value has to be.
enum class Rule { Text, Number, StringId, Flag, DataTypes, States, State, Type, FileName };

struct Key {
    std::string_view name;
    Rule rule;
    bool required;
};

constexpr Key substanceKeys[]
    = { { "ID", Rule::Number, true }, { "Name", Rule::Text, true }, { "Mixture", Rule::Number, true },
          { "Composition", Rule::Text, true }, { "NameID", Rule::StringId, false },
          { "Comment", Rule::Text, false }, { "CommentID", Rule::StringId, false } };
constexpr Key phaseKeys[] = { { "ID", Rule::Number, true }, { "Name", Rule::Text, true },
    { "Aggreg", Rule::State, true }, { "NameID", Rule::StringId, false } };
constexpr Key phaseChangeKeys[] = { { "ID", Rule::Number, true }, { "Name", Rule::Text, true },
    { "Phase1", Rule::Number, true }, { "Phase2", Rule::Number, true }, { "NameID", Rule::StringId, false } };
constexpr Key descriptionKeys[] = { { "ID", Rule::Number, true }, { "Name", Rule::Text, true },
    { "Units", Rule::Text, true }, { "Binary", Rule::Flag, true }, { "NameID", Rule::StringId, false },
    { "UnitsID", Rule::StringId, false }, { "Scalar", Rule::Flag, false }, { "Vector", Rule::Flag, false },
    { "AvForPhases", Rule::States, false }, { "DataTypes", Rule::DataTypes, false } };
constexpr Key headKeys[] = { { "ID", Rule::Number, true }, { "Vector", Rule::Flag, true },
    { "Type", Rule::Type, true }, { "Data", Rule::FileName, true } };

std::span<const Key> keysOf(DescriptorKind kind)
{
    switch (kind) {
    case DescriptorKind::Substance:
        return substanceKeys;
    case DescriptorKind::Phase:
        return phaseKeys;
    case DescriptorKind::PhaseChange:
        return phaseChangeKeys;
    case DescriptorKind::Description:
        return descriptionKeys;
    case DescriptorKind::Head:
        break;
    }
    return headKeys;
}

std::string_view trimmed(std::string_view text)
{
    constexpr std::string_view blanks = " \t";
    const std::size_t first = text.find_first_not_of(blanks);
    return first == std::string_view::npos ? std::string_view()
                                           : text.substr(first, text.find_last_not_of(blanks) + 1 - first);
}

void reportUnknownKey(
    Context& context, const Descriptor& descriptor, std::span<const Key> keys, const std::string& key)
{
    std::vector<std::string> names;
    for (const Key& known : keys) {
        names.emplace_back(known.name);
    }
    const bool onlyBlanks = trimmed(key) != key && std::ranges::find(names, trimmed(key)) != names.end();
    const auto near = nearMatches(names, trimmed(key));
    const std::string advice = onlyBlanks ? "remove the blanks beside \"=\": they belong to key and value"
        : near.empty()                    ? "remove the line"
                       : fmt::format("write \"{}\" if that is meant, else remove the line", near.front());
    context.findings.warning(
        "unknown-key", descriptor.place(key), fmt::format("nobody reads the key {}", shown(key)), advice);
}

void checkNumber(Context& context, const Descriptor& descriptor, std::string_view key)
{
    const std::string text = descriptor.text(key);
    if (asWholeNumber(text)) {
        return;
    }
    context.findings.error("bad-number", descriptor.place(key),
        fmt::format("\"{}\" is {}, which is no whole number; it is read as {}", key, shown(text),
            descriptor.number(key)),
        "write digits only");
}

void checkStringId(Context& context, const Descriptor& descriptor, std::string_view key)
{
    const std::string text = descriptor.text(key);
    const auto number = asWholeNumber(text);
    if (!number || *number < 0 || std::to_string(*number) != text) {
        context.findings.warning("bad-string-id", descriptor.place(key),
            fmt::format(
                "\"{}\" is {}, under which no string table is searched with success", key, shown(text)),
            "write the text's number in digits only, without leading zeros, or remove the line");
    }
}

void checkFlag(Context& context, const Descriptor& descriptor, std::string_view key)
{
    const std::string text = descriptor.text(key);
    if (text != "0" && text != "1") {
        context.findings.error("bad-flag", descriptor.place(key),
            fmt::format("\"{}\" is {}, which counts as 0", key, shown(text)), "write 0 or 1");
    }
}

/// Reports letters that mean nothing; whatever else stands between them does no harm.
void checkLetters(Context& context, const Descriptor& descriptor, std::string_view key,
    std::string_view letters, bool mayBeEmpty)
{
    const std::string text = descriptor.text(key);
    const auto isStray = [letters](char character) {
        return (std::isalpha(static_cast<unsigned char>(character)) != 0)
            && letters.find(character) == letters.npos;
    };
    if (std::ranges::any_of(text, isStray)) {
        context.findings.warning("bad-letter", descriptor.place(key),
            fmt::format("\"{}\" is {}, which holds letters that mean nothing", key, shown(text)),
            fmt::format("write letters out of {}", letters));
    }
    if (!mayBeEmpty && text.find_first_of(letters) == std::string::npos) {
        context.findings.warning("bad-letter", descriptor.place(key),
            fmt::format("\"{}\" holds none of the letters {}: no value can be added", key, letters),
            "write the letters of the types that values may have");
    }
}

void checkState(Context& context, const Descriptor& descriptor, std::string_view key)
{
    checkNumber(context, descriptor, key);
    if (const long state = descriptor.number(key); state < 1 || state > 3) {
        context.findings.warning("bad-state", descriptor.place(key),
            fmt::format("{} is no aggregate state: no parameter can be added to the phase", state),
            "write 1 for solid, 2 for liquid or 3 for gas");
    }
}

void checkType(Context& context, const Descriptor& descriptor, std::string_view key)
{
    checkNumber(context, descriptor, key);
    if (const long type = descriptor.number(key); type < 1 || type > 5) {
        context.findings.error("bad-type", descriptor.place(key),
            fmt::format("{} is no type: the value cannot be read", type),
            "write 1 for a constant, 2 or 3 for a table, 4 or 5 for a table of two arguments");
    }
}

void checkText(Context& context, const Descriptor& descriptor, std::string_view key)
{
    const std::string text = descriptor.text(key);
    if (trimmed(text) != text) {
        context.findings.warning("outer-blanks", descriptor.place(key),
            fmt::format("\"{}\" is {}: the outer blanks are part of it", key, shown(text)), "remove them");
    }
}

void checkValue(Context& context, const Descriptor& descriptor, const Key& key)
{
    switch (key.rule) {
    case Rule::Text:
    case Rule::FileName:
        return checkText(context, descriptor, key.name);
    case Rule::Number:
        return checkNumber(context, descriptor, key.name);
    case Rule::StringId:
        return checkStringId(context, descriptor, key.name);
    case Rule::Flag:
        return checkFlag(context, descriptor, key.name);
    case Rule::DataTypes:
        return checkLetters(context, descriptor, key.name, "CtpTX", false);
    case Rule::States:
        return checkLetters(context, descriptor, key.name, "SLV", true);
    case Rule::State:
        return checkState(context, descriptor, key.name);
    case Rule::Type:
        return checkType(context, descriptor, key.name);
    }
}

} // namespace

void checkKeys(Context& context, const Descriptor& descriptor, DescriptorKind kind)
{
    const std::span<const Key> keys = keysOf(kind);
    for (const Key& key : keys) {
        if (descriptor.has(key.name)) {
            checkValue(context, descriptor, key);
        } else if (key.required && descriptor.isReadable()) {
            context.findings.error("missing-key", { descriptor.file(), 0 },
                fmt::format("the key \"{}\" is missing: the database cannot be opened", key.name),
                fmt::format("add a line \"{}=...\"", key.name));
        }
    }
    for (const auto& [name, value] : descriptor.values()) {
        if (std::ranges::find(keys, name, &Key::name) == keys.end()) {
            reportUnknownKey(context, descriptor, keys, name);
        }
    }
}

} // namespace tool::check
