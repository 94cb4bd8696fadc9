#include "check/rules.h"

#include "common/encodings.h"
#include "common/shown.h"

#include <fmt/format.h>
#include <map>
#include <type_traits>

namespace tool::check {

namespace {

using format::Key;

/// Characters that fit into a record's field, before its end.
constexpr std::size_t longestName = std::extent_v<decltype(MATTER::name)> - 1;
constexpr std::size_t longestUnits = std::extent_v<decltype(PARAMETER::units)> - 1;

/// A text that the library hands out: what stands under `key`, unless the table has one under the ID.
struct Text {
    std::string text;
    Place place;
};

Text displayed(const Descriptor& object, const Descriptor* table, Key key, Key idKey)
{
    const std::string id = object.text(idKey);
    if (table && !id.empty() && table->has(id)) {
        return { table->text(id), table->place(id) };
    }
    return { object.text(key), object.place(key) };
}

void checkLength(Context& context, const Text& text, std::size_t longest)
{
    if (const std::size_t length = toWide(text.text).size(); length > longest) {
        context.findings.warning("long-text", text.place,
            fmt::format("the text has {} characters and is handed out cut to {}", length, longest),
            "shorten it");
    }
}

void checkName(Context& context, const Text& name)
{
    checkLength(context, name, longestName);
    if (name.text.empty()) {
        context.findings.warning("empty-name", name.place, "the name is empty", "give it a name");
    }
}

/// The names of things of one kind that stand side by side.
class Names {
public:
    void add(Context& context, const Descriptor& object, const Descriptor* table)
    {
        if (!object.has(Key::Name)) {
            return; // reported as a missing key
        }
        const Text name = displayed(object, table, Key::Name, Key::NameID);
        checkName(context, name);
        const auto [holder, isNew] = holders_.emplace(name.text, object.file());
        if (!isNew && !name.text.empty()) {
            context.findings.warning("duplicate-name", object.place(Key::Name),
                fmt::format("{} has the name {} too", holder->second, shown(name.text)),
                "give one of them another name");
        }
    }

private:
    std::map<std::string, std::string> holders_;
};

/// Checks all texts as they come out with one string table, or without any.
void checkWithTable(Context& context, const Tree& tree, const Descriptor* table)
{
    Names substances, descriptions;
    for (const SubstanceTree& substance : tree.substances) {
        substances.add(context, substance.self.descriptor, table);
        checkLength(
            context, displayed(substance.self.descriptor, table, Key::Comment, Key::CommentID), longestName);
        Names phases, changes;
        for (const Entity& phase : substance.phases) {
            phases.add(context, phase.descriptor, table);
        }
        for (const Entity& change : substance.changes) {
            changes.add(context, change.descriptor, table);
        }
    }
    for (const Descriptor& description : tree.descriptions) {
        descriptions.add(context, description, table);
        checkLength(context, displayed(description, table, Key::Units, Key::UnitsID), longestUnits);
    }
}

/// Where the string IDs are used, by the text of the ID.
std::map<std::string, Place> usedStringIds(const Tree& tree)
{
    std::map<std::string, Place> used;
    const auto add = [&used](const Descriptor& object) {
        for (const Key key : { Key::NameID, Key::CommentID, Key::UnitsID }) {
            if (object.has(key)) {
                used.emplace(object.text(key), object.place(key));
            }
        }
    };
    for (const SubstanceTree& substance : tree.substances) {
        add(substance.self.descriptor);
        for (const auto* entities : { &substance.phases, &substance.changes }) {
            for (const Entity& entity : *entities) {
                add(entity.descriptor);
            }
        }
    }
    for (const Descriptor& description : tree.descriptions) {
        add(description);
    }
    return used;
}

void checkUnused(Context& context, const Descriptor& table, const std::map<std::string, Place>& used)
{
    for (const auto& [id, text] : table.values()) {
        if (!used.contains(id)) {
            context.findings.warning("unused-text", table.place(id),
                fmt::format("nothing refers to the text {}", shown(id)),
                "remove the line, or refer to it by this number in digits only");
        }
    }
}

void checkTranslated(Context& context, const Descriptor& table, const Descriptor& other,
    const std::map<std::string, Place>& used)
{
    for (const auto& [id, place] : used) {
        if (table.has(id) && !other.has(id)) {
            context.findings.warning("untranslated", table.place(id),
                fmt::format("the text {} is missing in {}", id, other.file()),
                fmt::format("add it to {}", other.file()));
        }
    }
}

} // namespace

void checkTexts(Context& context, const Tree& tree)
{
    if (tree.tables.empty()) {
        checkWithTable(context, tree, nullptr);
    }
    const auto used = usedStringIds(tree);
    for (const Descriptor& table : tree.tables) {
        checkWithTable(context, tree, &table);
        checkUnused(context, table, used);
        for (const Descriptor& other : tree.tables) {
            checkTranslated(context, table, other, used);
        }
    }
}

} // namespace tool::check
