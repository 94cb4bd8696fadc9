#include "check/rules.h"

#include "common/characters.h"
#include "common/encodings.h"

#include <algorithm>
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

/// A place where a string ID stands.
struct UsedId {
    Place place;
    std::string_view key;
    bool described = false; ///< in a description, which no addition writes
};

using UsedIds = std::multimap<std::string, UsedId>;

/// Where the string IDs are used, by the text of the ID.
UsedIds usedStringIds(const Tree& tree)
{
    UsedIds used;
    const auto add = [&used](const Descriptor& object, bool described) {
        for (const Key key : { Key::NameID, Key::CommentID, Key::UnitsID }) {
            if (object.has(key)) {
                used.emplace(object.text(key), UsedId { object.place(key), textOf(key), described });
            }
        }
    };
    for (const SubstanceTree& substance : tree.substances) {
        add(substance.self.descriptor, false);
        for (const auto* entities : { &substance.phases, &substance.changes }) {
            for (const Entity& entity : *entities) {
                add(entity.descriptor, false);
            }
        }
    }
    for (const Descriptor& description : tree.descriptions) {
        add(description, true);
    }
    return used;
}

/// True when some text may not have been read, so that nobody knows which string IDs are in use.
bool isIncomplete(const Findings& findings)
{
    return findings.hasAny({ "cannot-open", "cannot-read", "utf-16", "cr-only", "long-line", "lone-cr",
        "nul-byte", "bad-encoding", "bad-name", "no-key", "several-descriptors", "no-descriptor",
        "wrong-extension", "misplaced-file" });
}

void checkUnused(Context& context, const Descriptor& table, const UsedIds& used)
{
    for (const auto& [id, text] : table.values()) {
        if (!used.contains(id)) {
            context.findings.warning("unused-text", table.place(id).behind(""),
                fmt::format("nothing refers to the text {}", shown(id)),
                "remove the line, or refer to it by this number in digits only");
        }
    }
}

void checkTranslated(Context& context, const Descriptor& table, const Descriptor& other, const UsedIds& used)
{
    for (const auto& [id, where] : used) {
        if (table.has(id) && other.isReadable() && !other.has(id)) {
            context.findings.warning("untranslated", table.place(id),
                fmt::format("the text {} is missing in {}", id, other.file()),
                fmt::format("add it to {}", other.file()));
        }
    }
}

bool isHeld(const std::vector<Descriptor>& tables, std::string_view id)
{
    return std::ranges::any_of(tables, [id](const Descriptor& table) { return table.has(id); });
}

/// Reports string IDs that no table has. Additions give new ones above all others; those are no mistakes.
void checkMissing(Context& context, const Tree& tree, const UsedIds& used)
{
    long highest = format::noId;
    for (const Descriptor& table : tree.tables) {
        for (const auto& [id, text] : table.values()) {
            highest = std::max(highest, stringIdOf(id).value_or(format::noId));
        }
    }
    for (const auto& [id, where] : used) {
        const auto number = stringIdOf(id);
        if (number && !isHeld(tree.tables, id) && (where.described || *number <= highest)) {
            context.findings.warning("missing-text", where.place,
                fmt::format("\"{}\" is {}, and no string table has a text of this number", where.key, id),
                "write the number of a text, or add the text to the tables");
        }
    }
}

/// Other languages have units of their own, but the default table is of the descriptors' language.
void checkUnits(Context& context, const Descriptor& table, const Tree& tree)
{
    for (const Descriptor& description : tree.descriptions) {
        const std::string id = description.text(Key::UnitsID);
        if (!id.empty() && table.has(id) && description.has(Key::Units)
            && table.text(id) != description.text(Key::Units)) {
            context.findings.warning("units-differ", description.place(Key::Units),
                fmt::format("the units are {} here and {} under {} in {}, which counts",
                    shown(description.text(Key::Units)), shown(table.text(id)), id, table.file()),
                "write the same units in both");
        }
    }
}

} // namespace

void checkTexts(Context& context, const Tree& tree)
{
    if (tree.tables.empty()) {
        checkWithTable(context, tree, nullptr);
    }
    const UsedIds used = usedStringIds(tree);
    const bool incomplete = isIncomplete(context.findings);
    for (const Descriptor& table : tree.tables) {
        checkWithTable(context, tree, &table);
        for (const auto& [id, text] : table.values()) {
            checkText(context, table, id);
        }
        if (!incomplete) {
            checkUnused(context, table, used);
        }
        if (table.file() == format::defaultTable) {
            checkUnits(context, table, tree);
        }
        for (const Descriptor& other : tree.tables) {
            checkTranslated(context, table, other, used);
        }
    }
    if (std::ranges::all_of(tree.tables, &Descriptor::isReadable)) {
        checkMissing(context, tree, used);
    }
}

} // namespace tool::check
