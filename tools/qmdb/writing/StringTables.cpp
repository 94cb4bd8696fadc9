#include "writing/StringTables.h"

#include "check/rules.h"

#include "format/keys.h"
#include "format/vocabulary.h"

#include <algorithm>
#include <utility>

namespace tool::writing {

namespace {

using format::Key;

/// A text's own key, and that of its string ID.
struct TextKeys {
    Key text;
    Key id;
};

TextKeys keysOf(TextKey key)
{
    switch (key) {
    case TextKey::Comment:
        return { Key::Comment, Key::CommentID };
    case TextKey::Units:
        return { Key::Units, Key::UnitsID };
    case TextKey::Name:
        break;
    }
    return { Key::Name, Key::NameID };
}

Language otherThan(Language language)
{
    return language == Language::Default ? Language::Russian : Language::Default;
}

/// What a descriptor would show, by its text, its string ID and a table.
std::string shownText(
    const StringTables& tables, std::string_view own, std::string_view id, Language language)
{
    return (id.empty() ? std::nullopt : tables.text(language, id)).value_or(std::string(own));
}

} // namespace

Language languageOf(std::string_view name)
{
    return name.starts_with(format::russianLanguage) ? Language::Russian : Language::Default;
}

StringTables::StringTables(std::string root, const check::Tree& tree)
    : root_(std::move(root))
{
    for (const check::Descriptor& file : tree.tables) {
        const bool russian = file.file() == format::russianTable;
        Table& read = table(russian ? Language::Russian : Language::Default);
        read.exists = true;
        for (const auto& [id, value] : file.values()) {
            read.texts.emplace(id, value.text);
            noteId(id);
        }
    }
    for (const check::Descriptor& description : tree.descriptions) {
        countUses(description);
    }
    for (const check::SubstanceTree& substance : tree.substances) {
        countUses(substance.self.descriptor);
        for (const auto* entities : { &substance.phases, &substance.changes }) {
            for (const check::Entity& entity : *entities) {
                countUses(entity.descriptor);
            }
        }
    }
}

void StringTables::countUses(const check::Descriptor& descriptor)
{
    for (const Key key : { Key::NameID, Key::CommentID, Key::UnitsID }) {
        if (descriptor.has(key)) {
            ++uses_[descriptor.text(key)];
            noteId(descriptor.text(key));
        }
    }
}

void StringTables::noteId(const std::string& id)
{
    highestId_ = std::max(highestId_, check::stringIdOf(id).value_or(0));
}

std::optional<std::string> StringTables::text(Language language, std::string_view id) const
{
    const auto& texts = table(language).texts;
    const auto found = texts.find(id);
    return found == texts.end() ? std::nullopt : std::optional(found->second);
}

void StringTables::set(Language language, const std::string& id, std::string_view text)
{
    Table& changed = table(language);
    changed.texts[id] = text;
    changed.newTexts[id] = text;
    noteId(id);
}

int StringTables::uses(std::string_view id) const
{
    const auto found = uses_.find(id);
    return found == uses_.end() ? 0 : found->second;
}

std::string StringTables::newId()
{
    const std::string id = std::to_string(++highestId_);
    uses_[id] = 1;
    return id;
}

std::string StringTables::idOf(std::string_view text, std::string_view russianText)
{
    std::string& id = newPairs_[{ std::string(text), std::string(russianText) }];
    if (id.empty()) {
        id = newId();
        set(Language::Default, id, text);
        set(Language::Russian, id, russianText);
    } else {
        ++uses_[id];
    }
    return id;
}

std::string_view StringTables::nameOf(Language language) noexcept
{
    return language == Language::Russian ? format::russianTable : format::defaultTable;
}

void StringTables::release(const check::Descriptor& descriptor)
{
    for (const Key key : { Key::NameID, Key::CommentID, Key::UnitsID }) {
        const std::string id = descriptor.text(key);
        if (!descriptor.has(key) || --uses_[id] > 0) {
            continue;
        }
        for (Table& changed : tables_) {
            if (changed.texts.contains(id)) {
                changed.dropped.insert(id);
            }
        }
    }
}

DescriptorText StringTables::changedTable(Language language) const
{
    const Table& changed = table(language);
    const std::string name(nameOf(language));
    requireOwnFile(root_, name);
    DescriptorText text = changed.exists ? DescriptorText::read(root_, name) : DescriptorText();
    for (const auto& [id, value] : changed.newTexts) {
        text.append(id, value);
    }
    return text;
}

void StringTables::addNewTexts(Changes& changes) const
{
    for (const Language language : { Language::Default, Language::Russian }) {
        const Table& changed = table(language);
        if (changed.newTexts.empty() && (changed.exists || !required_)) {
            continue;
        }
        std::string name(nameOf(language));
        std::string bytes = changedTable(language).bytes();
        changed.exists ? changes.replaceFile(std::move(name), std::move(bytes))
                       : changes.makeFile(std::move(name), std::move(bytes));
    }
}

void StringTables::addDroppedTexts(Changes& changes) const
{
    for (const Language language : { Language::Default, Language::Russian }) {
        const Table& changed = table(language);
        if (changed.dropped.empty()) {
            continue;
        }
        DescriptorText text = changedTable(language);
        for (const std::string& id : changed.dropped) {
            text.remove(id);
        }
        changes.replaceFile(std::string(nameOf(language)), text.bytes());
    }
}

std::string displayText(
    const StringTables& tables, const check::Descriptor& descriptor, TextKey key, Language language)
{
    const auto [textKey, idKey] = keysOf(key);
    return shownText(tables, descriptor.text(textKey), descriptor.text(idKey), language);
}

void setDisplayText(
    StringTables& tables, DescriptorText& descriptor, TextKey key, Language language, std::string_view text)
{
    const auto [textKey, idKey] = keysOf(key);
    const std::string own = descriptor.text(textOf(textKey)).value_or("");
    std::string id = descriptor.text(textOf(idKey)).value_or("");
    const bool needsId = id.empty() ? language == Language::Russian : tables.uses(id) > 1;
    if (needsId) {
        const std::string before = std::exchange(id, tables.newId());
        const Language other = otherThan(language);
        tables.set(other, id, shownText(tables, own, before, other));
        tables.set(language, id, text);
        descriptor.set(textOf(idKey), id);
    } else if (!id.empty() && (language == Language::Russian || tables.text(language, id))) {
        if (!tables.text(Language::Default, id)) {
            tables.set(Language::Default, id, own);
        }
        tables.set(language, id, text);
    }
    if (language == Language::Default) {
        descriptor.set(textOf(textKey), text);
    }
}

void setNewTexts(StringTables& tables, DescriptorText& descriptor, TextKey key, std::string_view text,
    std::string_view russianText)
{
    const auto [textKey, idKey] = keysOf(key);
    descriptor.set(textOf(textKey), text);
    if (!russianText.empty()) {
        const std::string id = tables.idOf(text, russianText);
        descriptor.set(textOf(idKey), id);
    }
}

} // namespace tool::writing
