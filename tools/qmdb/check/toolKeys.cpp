#include "check/rules.h"

#include "common/characters.h"
#include "common/encodings.h"
#include "common/names.h"

#include "format/items.h"

#include <algorithm>
#include <fmt/format.h>
#include <map>

namespace tool::check {

namespace {

using format::Key;

bool hasOuterBlanks(std::string_view item)
{
    const std::wstring wide = toWide(item);
    return !wide.empty() && (isBlank(wide.front()) || isBlank(wide.back()));
}

void checkItems(Context& context, const Descriptor& descriptor, std::string_view key)
{
    const std::string text = descriptor.text(key);
    for (const std::string_view item : format::splitItems(text)) {
        if (item.empty()) {
            context.findings.warning("empty-item", descriptor.place(key),
                fmt::format("\"{}\" is {}, with an empty item", key, shown(text)),
                fmt::format(
                    "write one \"{}\" between two items, and none at the ends", format::itemSeparator));
            return;
        }
    }
    const auto items = format::splitItems(text);
    const bool inner = !hasOuterBlanks(text) && std::ranges::any_of(items, hasOuterBlanks);
    if (inner) { // blanks around the whole are reported with every text
        context.findings.warning("outer-blanks", descriptor.place(key),
            fmt::format("\"{}\" is {}: the blanks beside \"{}\" belong to the items", key, shown(text),
                format::itemSeparator),
            "remove them");
    }
}

void checkCas(Context& context, const Descriptor& descriptor, std::string_view key)
{
    const std::string text = descriptor.text(key);
    if (!text.empty() && !format::isCasNumber(text)) {
        context.findings.warning("bad-cas", descriptor.place(key),
            fmt::format(
                "\"{}\" is {}, which is no CAS number, or its check digit is wrong", key, shown(text)),
            "write it as in 7732-18-5");
    }
}

/// The types that a description allows values to have.
std::vector<PARAM_TYPE> typesOf(const Descriptor& description)
{
    std::vector<PARAM_TYPE> types;
    for (const PARAM_TYPE type : { PARAM_TYPE_CONSTANT, PARAM_TYPE_TABLE_T, PARAM_TYPE_TABLE_P,
             PARAM_TYPE_TABLE2D_T, PARAM_TYPE_TABLE2D_X }) {
        if (format::isAmong(format::letterOf(type), description.text(Key::DataTypes))) {
            types.push_back(type);
        }
    }
    return types;
}

/// The items that two items would be used of by the types: the first, the second, both or none.
std::set<std::size_t> usedItems(const std::vector<PARAM_TYPE>& types)
{
    std::set<std::size_t> used;
    for (const PARAM_TYPE type : types) {
        for (std::size_t i = 0; i < format::argumentsOf(type); ++i) {
            used.insert(format::itemIndexOf(type, i));
        }
    }
    return used;
}

/// True when one item would be that of a temperature and of a pressure.
bool isShared(const std::vector<PARAM_TYPE>& types)
{
    std::set<std::string_view> names;
    for (const PARAM_TYPE type : types) {
        for (std::size_t i = 0; i < format::argumentsOf(type); ++i) {
            names.insert(format::usualArgumentName(type, i));
        }
    }
    return names.contains("temperature") && names.contains("pressure");
}

void checkArgumentItems(Context& context, const Descriptor& description, std::string_view key)
{
    const std::vector<PARAM_TYPE> types = typesOf(description);
    const std::size_t used = usedItems(types).size();
    const std::string text = description.text(key);
    const std::size_t items = format::splitItems(text).size();
    constexpr auto advice
        = "write one item for every argument alike, or first that of the pressure, then that "
          "of the temperature";
    if (items > std::max<std::size_t>(used, 1)) {
        context.findings.warning("argument-items", description.place(key),
            fmt::format("\"{}\" has {} items for {} argument{} of the types {}", key, items, used,
                used == 1 ? "" : "s", shown(description.text(Key::DataTypes))),
            advice);
    } else if (items == 1 && isShared(types) && description.text(format::argumentNameKey).empty()) {
        context.findings.warning("argument-items", description.place(key),
            fmt::format("\"{}\" is {} for the pressure and for the temperature", key, shown(text)), advice);
    } else if (items > 0 && used == 0) {
        context.findings.warning("argument-items", description.place(key),
            fmt::format("\"{}\" is given, but values of the types {} have no arguments", key,
                shown(description.text(Key::DataTypes))),
            "remove the line");
    }
}

void checkDescription(Context& context, const Descriptor& description)
{
    for (const std::string_view key : { format::argumentUnitsKey, format::argumentNameKey }) {
        if (description.has(key)) {
            checkArgumentItems(context, description, key);
        }
    }
    const bool given = !description.text(format::argumentUnitsKey).empty();
    if (!given && description.isReadable() && !usedItems(typesOf(description)).empty()) {
        context.findings.warning("no-argument-units", { description.file(), Place::endOfFile },
            "values may have arguments, and nothing tells the units of these",
            fmt::format("add a line such as \"{}=K\" or \"{}=Pa;K\"", format::argumentUnitsKey,
                format::argumentUnitsKey));
    }
}

/// Names by which things of one kind may be called, and who has each.
class Callings {
public:
    void add(std::string_view name, const Descriptor& holder)
    {
        if (!name.empty()) {
            holders_.emplace(name, &holder);
        }
    }

    /// Reports a name that another thing has as well.
    void check(Context& context, const Descriptor& holder, std::string_view key, std::string_view name,
        std::string_view shownName) const
    {
        const auto [first, last] = holders_.equal_range(name);
        const auto isOther = [&](const auto& entry) { return entry.second != &holder; };
        if (const auto other = std::find_if(first, last, isOther); other != last) {
            context.findings.warning("ambiguous-name", holder.place(key),
                fmt::format(
                    "\"{}\" is {}, by which {} goes too", key, shown(shownName), other->second->file()),
                "give it to one of them only");
        }
    }

private:
    std::multimap<std::string, const Descriptor*, std::less<>> holders_;
};

/// Everything that a substance goes by: two of one formula may well exist, but an alias tells one.
void addCallings(Callings& callings, const Tree& tree, const Descriptor& substance)
{
    std::set<std::string> names { lowerCase(substance.text(Key::Name)),
        lowerCase(substance.text(format::formulaKey)) };
    for (const Descriptor& table : tree.tables) {
        names.insert(lowerCase(table.text(substance.text(Key::NameID))));
    }
    const std::string aliases = substance.text(format::aliasesKey);
    for (const std::string_view alias : format::splitItems(aliases)) {
        names.insert(lowerCase(alias));
    }
    for (const std::string& name : names) {
        callings.add(name, substance);
    }
}

void checkAliases(Context& context, const Callings& callings, const Descriptor& substance)
{
    const std::string aliases = substance.text(format::aliasesKey);
    for (const std::string_view alias : format::splitItems(aliases)) {
        callings.check(context, substance, format::aliasesKey, lowerCase(alias), alias);
    }
}

} // namespace

void checkToolKeys(Context& context, const Descriptor& descriptor, const format::DescriptorKind& kind)
{
    for (const format::ToolKeyRule& rule : kind.toolKeys) {
        if (!descriptor.has(rule.key)) {
            continue;
        }
        checkText(context, descriptor, rule.key);
        switch (rule.value) {
        case format::ToolValueKind::Text:
            break;
        case format::ToolValueKind::Items:
        case format::ToolValueKind::ArgumentItems:
            checkItems(context, descriptor, rule.key);
            break;
        case format::ToolValueKind::CasNumber:
            checkCas(context, descriptor, rule.key);
            break;
        }
    }
}

void checkAnnotations(Context& context, const Tree& tree)
{
    Callings symbols;
    for (const Descriptor& description : tree.descriptions) {
        checkDescription(context, description);
        symbols.add(description.text(format::symbolKey), description);
    }
    for (const Descriptor& description : tree.descriptions) {
        const std::string symbol = description.text(format::symbolKey);
        symbols.check(context, description, format::symbolKey, symbol, symbol);
    }
    Callings substances;
    for (const SubstanceTree& substance : tree.substances) {
        addCallings(substances, tree, substance.self.descriptor);
    }
    for (const SubstanceTree& substance : tree.substances) {
        checkAliases(context, substances, substance.self.descriptor);
    }
}

} // namespace tool::check
