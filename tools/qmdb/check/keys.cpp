#include "check/rules.h"

#include "common/characters.h"
#include "common/encodings.h"
#include "common/names.h"
#include "common/numbers.h"

#include <algorithm>
#include <fmt/format.h>
#include <span>

namespace tool::check {

namespace {

using format::KeyRule;

std::string_view trimmed(std::string_view text)
{
    constexpr std::string_view blanks = " \t";
    const std::size_t first = text.find_first_not_of(blanks);
    return first == std::string_view::npos ? std::string_view()
                                           : text.substr(first, text.find_last_not_of(blanks) + 1 - first);
}

/// The keys that descriptors of a kind may have.
std::vector<std::string> namesOf(const format::DescriptorKind& kind)
{
    std::vector<std::string> names;
    for (const KeyRule& rule : kind.keys) {
        names.emplace_back(textOf(rule.key));
    }
    for (const format::ToolKeyRule& rule : kind.toolKeys) {
        names.emplace_back(rule.key);
    }
    return names;
}

void reportUnknownKey(Context& context, const Descriptor& descriptor, const std::vector<std::string>& names,
    const std::string& key)
{
    const bool onlyBlanks = trimmed(key) != key && std::ranges::find(names, trimmed(key)) != names.end();
    const auto near = nearMatches(names, trimmed(key));
    const std::string advice = onlyBlanks ? "remove the blanks beside \"=\": they belong to key and value"
        : near.empty()                    ? "remove the line"
                       : fmt::format("write \"{}\" if that is meant, else remove the line", near.front());
    context.findings.warning(
        "unknown-key", descriptor.place(key), fmt::format("nobody reads the key {}", shown(key)), advice);
}

void checkNumber(Context& context, const Descriptor& descriptor, format::Key key)
{
    const std::string text = descriptor.text(key);
    if (asWholeNumber(text)) {
        return;
    }
    context.findings.error("bad-number", descriptor.place(key),
        fmt::format("\"{}\" is {}, which is no whole number; it is read as {}", textOf(key), shown(text),
            descriptor.number(key)),
        "write digits only");
}

void checkStringId(Context& context, const Descriptor& descriptor, format::Key key)
{
    const std::string text = descriptor.text(key);
    if (!stringIdOf(text)) {
        context.findings.warning("bad-string-id", descriptor.place(key),
            fmt::format("\"{}\" is {}, under which no string table is searched with success", textOf(key),
                shown(text)),
            "write the text's number in digits only, without leading zeros, or remove the line");
    }
}

void checkFlag(Context& context, const Descriptor& descriptor, format::Key key)
{
    const std::string text = descriptor.text(key);
    if (text != format::falseFlag && text != format::trueFlag) {
        context.findings.error("bad-flag", descriptor.place(key),
            fmt::format("\"{}\" is {}, which counts as 0", textOf(key), shown(text)), "write 0 or 1");
    }
}

/// Reports letters that mean nothing; whatever else stands between them does no harm.
void checkLetters(Context& context, const Descriptor& descriptor, format::Key key, std::string_view letters,
    bool mayBeEmpty)
{
    const std::string text = descriptor.text(key);
    const auto isStray = [letters](char character) {
        return (std::isalpha(static_cast<unsigned char>(character)) != 0)
            && letters.find(character) == letters.npos;
    };
    if (std::ranges::any_of(text, isStray)) {
        context.findings.warning("bad-letter", descriptor.place(key),
            fmt::format("\"{}\" is {}, which holds letters that mean nothing", textOf(key), shown(text)),
            fmt::format("write letters out of {}", letters));
    }
    if (!mayBeEmpty && text.find_first_of(letters) == std::string::npos) {
        context.findings.warning("bad-letter", descriptor.place(key),
            fmt::format("\"{}\" holds none of the letters {}: no value can be added", textOf(key), letters),
            "write the letters of the types that values may have");
    }
}

void checkState(Context& context, const Descriptor& descriptor, format::Key key)
{
    checkNumber(context, descriptor, key);
    if (const long state = descriptor.number(key); !format::isState(state)) {
        context.findings.warning("bad-state", descriptor.place(key),
            fmt::format("{} is no aggregate state: no parameter can be added to the phase", state),
            "write 1 for solid, 2 for liquid or 3 for gas");
    }
}

void checkType(Context& context, const Descriptor& descriptor, format::Key key)
{
    checkNumber(context, descriptor, key);
    if (const long type = descriptor.number(key); !format::isType(type)) {
        context.findings.error("bad-type", descriptor.place(key),
            fmt::format("{} is no type: the value cannot be read", type),
            "write 1 for a constant, 2 or 3 for a table, 4 or 5 for a table of two arguments");
    }
}

void checkFileName(Context& context, const Descriptor& descriptor, format::Key key)
{
    checkText(context, descriptor, textOf(key));
    const std::string text = descriptor.text(key);
    if (fmt::format("/{}/", text).find("/../") != std::string::npos) {
        context.findings.warning("leads-out", descriptor.place(key),
            fmt::format("\"{}\" is {}, which leads out of the directory", textOf(key), shown(text)),
            "put the file beside this one, and write its name");
    }
}

void checkValue(Context& context, const Descriptor& descriptor, const KeyRule& rule)
{
    switch (rule.value) {
    case format::ValueKind::Text:
        return checkText(context, descriptor, textOf(rule.key));
    case format::ValueKind::FileName:
        return checkFileName(context, descriptor, rule.key);
    case format::ValueKind::Number:
        return checkNumber(context, descriptor, rule.key);
    case format::ValueKind::StringId:
        return checkStringId(context, descriptor, rule.key);
    case format::ValueKind::Flag:
        return checkFlag(context, descriptor, rule.key);
    case format::ValueKind::Types:
        return checkLetters(context, descriptor, rule.key, format::typeLetters, false);
    case format::ValueKind::States:
        return checkLetters(context, descriptor, rule.key, format::stateLetters, true);
    case format::ValueKind::State:
        return checkState(context, descriptor, rule.key);
    case format::ValueKind::Type:
        return checkType(context, descriptor, rule.key);
    }
}

} // namespace

std::optional<long> stringIdOf(std::string_view text)
{
    const auto number = asWholeNumber(text);
    const bool plain = number && *number >= 0 && std::to_string(*number) == text;
    return plain ? number : std::nullopt;
}

void checkText(Context& context, const Descriptor& descriptor, std::string_view key)
{
    const std::string text = descriptor.text(key);
    const std::wstring wide = toWide(text);
    if (!wide.empty() && (isBlank(wide.front()) || isBlank(wide.back()))) {
        context.findings.warning("outer-blanks", descriptor.place(key),
            fmt::format("{} is {}: the outer blanks are part of it", shown(key), shown(text)), "remove them");
    }
    const auto isStray = [](wchar_t character) { return character != L'\r' && isControl(character); };
    if (std::ranges::any_of(wide, isStray)) { // a CR is reported with the line
        context.findings.warning("control-character", descriptor.place(key),
            fmt::format("{} is {}, with control characters in it", shown(key), shown(text)), "remove them");
    }
}

void checkKeys(Context& context, const Descriptor& descriptor, const format::DescriptorKind& kind)
{
    for (const KeyRule& rule : kind.keys) {
        if (descriptor.has(rule.key)) {
            checkValue(context, descriptor, rule);
        } else if (rule.required && descriptor.isReadable()) {
            context.findings.error("missing-key", { descriptor.file(), Place::endOfFile },
                fmt::format("the key \"{}\" is missing: the database cannot be opened", textOf(rule.key)),
                fmt::format("add a line \"{}=...\"", textOf(rule.key)));
        }
    }
    checkToolKeys(context, descriptor, kind);
    const std::vector<std::string> names = namesOf(kind);
    for (const auto& [name, value] : descriptor.values()) {
        if (std::ranges::find(names, name) == names.end()) {
            reportUnknownKey(context, descriptor, names, name);
        }
    }
}

} // namespace tool::check
