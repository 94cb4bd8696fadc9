#include "writing/importPlan.h"

#include "annotations/Annotations.h"
#include "annotations/scan.h"
#include "common/characters.h"
#include "common/encodings.h"
#include "common/failure.h"
#include "common/names.h"
#include "common/numbers.h"
#include "writing/EditState.h"
#include "writing/composition.h"
#include "writing/dataText.h"
#include "writing/importColumns.h"
#include "writing/newFiles.h"

#include "format/composition.h"
#include "format/items.h"
#include "format/keys.h"
#include "format/numbers.h"

#include <algorithm>
#include <cstring>
#include <fmt/ranges.h>
#include <unordered_map>

namespace tool::writing {

namespace {

using check::Descriptor;
using check::Entity;
using check::SubstanceTree;
using format::Key;

constexpr std::string_view commentSeparator = " | ";

std::vector<std::string> splitAt(std::string_view text, std::string_view separator)
{
    std::vector<std::string> parts;
    for (std::size_t end = 0; end != std::string_view::npos;) {
        end = text.find(separator);
        parts.emplace_back(text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + separator.size());
    }
    return parts;
}

/// A name as records hold it.
std::string recordName(const std::string& name)
{
    constexpr std::size_t longest = std::extent_v<decltype(MATTER::name)> - 1;
    const std::wstring wide = toWide(name);
    return wide.size() > longest ? toUtf8(wide.substr(0, longest)) : name;
}

/// Equal in every bit, so that zeros keep their sign.
bool isSame(double one, double other)
{
    return std::memcmp(&one, &other, sizeof one) == 0 || (one != one && other != other);
}

bool isSame(const Table& one, const Table& other)
{
    const auto samePoint = [&](const Point& a, const Point& b) {
        return std::ranges::equal(
            numbersOf(one, a), numbersOf(other, b), [](double x, double y) { return isSame(x, y); });
    };
    return one.arguments == other.arguments && one.components == other.components
        && std::ranges::equal(one.points, other.points, samePoint);
}

std::optional<MATTER_STATE> stateOf(std::string_view text)
{
    for (std::size_t i = 1; i <= format::stateLetters.size(); ++i) {
        if (stateText(static_cast<MATTER_STATE>(i)) == text) {
            return static_cast<MATTER_STATE>(i);
        }
    }
    return std::nullopt;
}

/// What the database has of one kind of things, and what the draft adds.
struct Known {
    struct One {
        long id = 0;
        std::string name;
        const Descriptor* descriptor = nullptr; ///< null for a new one
        std::size_t index = 0; ///< among those of the tree
    };

    std::vector<One> all;
    std::unordered_multimap<long, std::size_t> byId;
    std::unordered_multimap<std::string, std::size_t> byName;
    long highest = -1;

    void add(One one)
    {
        byId.emplace(one.id, all.size());
        byName.emplace(one.name, all.size());
        highest = std::max(highest, one.id);
        all.push_back(std::move(one));
    }
};

/// Brings a draft into a database.
class Planner {
public:
    Planner(Edit& edit, const Database* present, const Draft& draft, const std::string& name, bool replace)
        : edit_(edit)
        , state_(edit.state())
        , present_(present)
        , draft_(draft)
        , problems_(name, "nothing is imported")
        , replace_(replace)
    {
    }

    ImportCounts run()
    {
        substances_ = known(state_.tree.substances,
            [](const SubstanceTree& one) -> const Descriptor& { return one.self.descriptor; });
        descriptions_
            = known(state_.tree.descriptions, [](const Descriptor& one) -> const Descriptor& { return one; });
        for (const DraftDescription& description : draft_.descriptions) {
            noteId(descriptions_, description);
        }
        descriptions_.highest = std::max(descriptions_.highest, 0L); // as "new" numbers them, from 1
        for (const DraftDescription& description : draft_.descriptions) {
            descriptionIds_.push_back(planDescription(description));
        }
        for (const DraftSubstance& substance : draft_.substances) {
            noteId(substances_, substance);
        }
        for (const DraftSubstance& substance : draft_.substances) {
            chosen_.push_back(
                choose(substances_, substance, "substance", Column::SubstanceId, Column::Substance));
        }
        for (std::size_t i = 0; i < draft_.substances.size(); ++i) {
            planSubstance(draft_.substances[i], chosen_[i]);
        }
        problems_.throwIfAny();
        return counts_;
    }

private:
    template <class All, class DescriptorOf>
    Known known(const All& all, DescriptorOf descriptorOf) const
    {
        Known known;
        for (std::size_t i = 0; i < all.size(); ++i) {
            const Descriptor& descriptor = descriptorOf(all[i]);
            known.add({ descriptor.number(Key::ID),
                recordName(displayText(state_.tables, descriptor, TextKey::Name, state_.language)),
                &descriptor, i });
        }
        return known;
    }

    /// New things without a number get those above all that the draft gives, too.
    static void noteId(Known& known, const DraftNamed& draft)
    {
        known.highest = std::max(known.highest, draft.id.value_or(-1));
    }

    void problem(const RowPlace& place, Column column, std::string_view what)
    {
        problems_.add(place, nameOf(column), what);
    }

    /// The one that a draft means: by number where the names agree, else by name; else a new one.
    Known::One choose(
        Known& known, const DraftNamed& draft, std::string_view kind, Column idColumn, Column nameColumn)
    {
        if (draft.id) {
            const auto [first, last] = known.byId.equal_range(*draft.id);
            if (first != last) {
                const Known::One& one = known.all[first->second];
                if (std::next(first) != last) {
                    problem(draft.place, idColumn, fmt::format("several have the number {}", *draft.id));
                } else if (draft.name.isGiven() && draft.name.text != one.name) {
                    problem(draft.name.place, nameColumn,
                        fmt::format("the {} {} of the database is called {}, not {}", kind, *draft.id,
                            shown(one.name), shown(draft.name.text)));
                }
                return one;
            }
        }
        const auto [first, last] = known.byName.equal_range(draft.name.text);
        if (first != last && draft.name.isGiven() && !isNew(known.all[first->second], draft)) {
            const Known::One& one = known.all[first->second];
            if (std::next(first) != last) {
                problem(draft.name.place, nameColumn,
                    fmt::format("{} is the name of several; give the number", shown(draft.name.text)));
            } else if (draft.id) {
                problem(draft.place, idColumn,
                    fmt::format(
                        "{} has the number {} in the database, not {}", shown(one.name), one.id, *draft.id));
            }
            return one;
        }
        Known::One made { draft.id.value_or(++known.highest), draft.name.text, nullptr, 0 };
        known.add(made);
        return made;
    }

    /// Several new things may share a name when the rows give them numbers.
    static bool isNew(const Known::One& one, const DraftNamed& draft)
    {
        return !one.descriptor && draft.id.has_value();
    }

    /// Fills a key or a text that a descriptor lacks; another one is only replaced when that is asked for.
    bool mayTake(const Given& given, std::string_view present, Column column)
    {
        if (!given.isGiven() || given.text == present) {
            return false;
        }
        if (!present.empty() && !replace_) {
            problem(given.place, column,
                fmt::format("{} is {} in the database; --replace takes the new one", shown(given.text),
                    shown(present)));
            return false;
        }
        return true;
    }

    void takeKey(std::vector<KeyChange>& keys, const Descriptor* present, DescriptorOf kind,
        std::string_view key, const Given& given, Column column)
    {
        if (!mayTake(given, present ? present->text(key) : std::string(), column)) {
            return;
        }
        try {
            keys.push_back(checkedKey(kind, key, given.text));
        } catch (const Failure& failure) {
            problem(given.place, column, failure.what());
        }
    }

    void takeText(std::vector<TextChange>& texts, const Descriptor& present, TextKey key, Language language,
        const Given& given, Column column)
    {
        const Language other = language == Language::Default ? Language::Russian : Language::Default;
        const std::string shownText = displayText(state_.tables, present, key, language);
        // A text that both languages show is not this language's own.
        const bool own
            = language == Language::Default || shownText != displayText(state_.tables, present, key, other);
        if (mayTake(given, own || given.text == shownText ? shownText : std::string(), column)) {
            texts.push_back({ key, language, given.text });
        }
    }

    /// Adds the change of a descriptor that is there.
    void change(
        const Descriptor& present, const std::vector<TextChange>& texts, const std::vector<KeyChange>& keys)
    {
        if (texts.empty() && keys.empty()) {
            return;
        }
        DescriptorText text = DescriptorText::read(state_.directory, present.file());
        for (const TextChange& one : texts) {
            setDisplayText(state_.tables, text, one.key, one.language, one.text);
        }
        applyKeys(text, keys);
        state_.changes.replaceFile(present.file(), text.bytes());
    }

    // Descriptions

    long planDescription(const DraftDescription& draft)
    {
        if (!draft.name.isGiven() && !draft.units.isGiven() && draft.id
            && !descriptions_.byId.contains(*draft.id)) {
            return *draft.id; // a value that nothing describes
        }
        const Known::One one
            = choose(descriptions_, draft, "parameter", Column::ParameterId, Column::Parameter);
        one.descriptor ? extendDescription(draft, *one.descriptor) : makeDescription(draft, one.id);
        return one.id;
    }

    static Given itemsOf(const Given& given, const ArgumentTexts& items)
    {
        if (given.isGiven()) {
            return given;
        }
        const bool both = items[0] && items[1];
        if (!items[0] && !items[1]) {
            return {};
        }
        if (!both || items[0]->text == items[1]->text) {
            return items[0] ? *items[0] : *items[1];
        }
        return { fmt::format("{}{}{}", items[0]->text, format::itemSeparator, items[1]->text),
            items[1]->place };
    }

    std::vector<KeyChange> descriptionKeys(const DraftDescription& draft, const Descriptor* present)
    {
        std::vector<KeyChange> keys;
        takeKey(keys, present, DescriptorOf::Description, format::symbolKey, draft.symbol, Column::Symbol);
        if (present) { // one item of the database may stand for both: each is compared by itself
            takeArguments(keys, *present, format::argumentUnitsKey, draft.argumentUnits,
                draft.unitsOfArguments, Column::ArgumentUnits, Column::FirstArgumentUnits);
            takeArguments(keys, *present, format::argumentNameKey, draft.argumentNames,
                draft.namesOfArguments, Column::ArgumentNames, Column::FirstArgumentName);
        } else {
            takeKey(keys, nullptr, DescriptorOf::Description, format::argumentUnitsKey,
                itemsOf(draft.argumentUnits, draft.unitsOfArguments), Column::FirstArgumentUnits);
            takeKey(keys, nullptr, DescriptorOf::Description, format::argumentNameKey,
                itemsOf(draft.argumentNames, draft.namesOfArguments), Column::FirstArgumentName);
        }
        return keys;
    }

    void takeArguments(std::vector<KeyChange>& keys, const Descriptor& present, std::string_view key,
        const Given& whole, const ArgumentTexts& items, Column wholeColumn, Column itemColumn)
    {
        const std::string text = present.text(key);
        const auto parts = format::splitItems(text);
        const auto agrees = [&](std::size_t index) {
            const std::string_view part = parts.size() == 1 ? parts[0]
                : index < parts.size()                      ? parts[index]
                                                            : std::string_view();
            return !items[index] || !items[index]->isGiven() || items[index]->text == part;
        };
        if (whole.isGiven()) {
            takeKey(keys, &present, DescriptorOf::Description, key, whole, wholeColumn);
        } else if (!agrees(0) || !agrees(1)) {
            takeKey(keys, &present, DescriptorOf::Description, key, itemsOf({}, items), itemColumn);
        }
    }

    void extendDescription(const DraftDescription& draft, const Descriptor& present)
    {
        std::vector<TextChange> texts;
        takeText(texts, present, TextKey::Name, Language::Russian, draft.russianName, Column::ParameterRu);
        takeText(texts, present, TextKey::Units, Language::Russian, draft.russianUnits, Column::UnitsRu);
        const std::string units = displayText(state_.tables, present, TextKey::Units, state_.language);
        if (draft.units.isGiven() && draft.units.text != cutUnits(units)) {
            problem(draft.units.place, Column::Units,
                fmt::format(
                    "{} has the units {} in the database; convert the values, or give it another name",
                    shown(draft.name.text), shown(units)));
        }
        change(present, texts, descriptionKeys(draft, &present));
    }

    static std::string cutUnits(const std::string& units)
    {
        constexpr std::size_t longest = std::extent_v<decltype(PARAMETER::units)> - 1;
        return toUtf8(toWide(units).substr(0, longest));
    }

    void makeDescription(const DraftDescription& draft, long id)
    {
        NewDescription made;
        made.id = id;
        made.name = draft.name.text;
        made.russianName = draft.russianName.text;
        made.units = draft.units.text;
        made.russianUnits = draft.russianUnits.text;
        made.types = lettersOf(draft.types, draft.usedTypes, format::typeLetters, Column::ParameterTypes);
        made.states
            = lettersOf(draft.states, draft.usedStates, format::stateLetters, Column::ParameterStates);
        made.scalar = draft.forms.isGiven() ? draft.forms.text.starts_with("scalar")
                                            : draft.scalarUsed || !draft.vectorUsed;
        made.vector = draft.forms.isGiven() ? draft.forms.text.ends_with("vector") : draft.vectorUsed;
        if (draft.forms.isGiven() && draft.forms.text != "scalar" && draft.forms.text != "vector"
            && draft.forms.text != "scalar vector") {
            problem(draft.forms.place, Column::ParameterForms,
                "write \"scalar\", \"vector\" or \"scalar vector\"");
        }
        if (!draft.name.isGiven()) {
            problem(draft.place, Column::Parameter, "the new parameter has no name");
        }
        // A slip of the pen in the name of another would make it: exports give numbers, people give units.
        if (!draft.units.isGiven() && !draft.id) {
            problem(draft.place, Column::Units, missingUnits(draft.name.text));
        }
        made.keys = descriptionKeys(draft, nullptr);
        if (draft.types.isGiven() || draft.forms.isGiven()) {
            newRules_.emplace(id, &draft);
        }
        writing::makeDescription(state_, id, made);
        ++counts_.descriptions;
    }

    std::string missingUnits(const std::string& name) const
    {
        std::vector<std::string> names;
        for (const Descriptor& one : state_.tree.descriptions) {
            names.push_back(displayText(state_.tables, one, TextKey::Name, state_.language));
        }
        const auto near = nearMatches(names, name);
        return fmt::format("{} is a new parameter, and needs units, 1 for a plain number{}{}", shown(name),
            near.empty() ? "" : "; near matches in the database: ", fmt::join(near, ", "));
    }

    std::string lettersOf(const Given& given, const std::set<char>& used, std::string_view all, Column column)
    {
        std::string letters;
        for (const char letter : all) {
            if (given.isGiven() ? given.text.find(letter) != std::string::npos : used.contains(letter)) {
                letters += letter;
            }
        }
        if (given.text.find_first_not_of(all) != std::string::npos && given.text != "none") {
            problem(given.place, column, fmt::format("write letters of {}, or \"none\"", all));
        }
        return letters;
    }

    // Substances

    void planSubstance(const DraftSubstance& draft, const Known::One& one)
    {
        const SubstanceTree* present = one.descriptor ? &state_.tree.substances[one.index] : nullptr;
        std::string directory = present ? present->self.directory : std::string();
        if (!present) {
            if (draft.owners.size() < 2 || !hasPhase(draft)) {
                problem(draft.place, Column::Phase,
                    "the new substance has no phase, and would not be found: give a row with \"phase\" and "
                    "\"state\"");
            }
            directory = makeEntity(
                "", format::Series::Substances, format::substanceExtension, substanceText(draft, one.id));
            ++counts_.substances;
        } else {
            extendSubstance(draft, *present);
        }
        planOwners(draft, one.id, directory, present);
    }

    static bool hasPhase(const DraftSubstance& draft)
    {
        return std::ranges::any_of(
            draft.owners, [](const DraftOwner& owner) { return owner.kind == Owner::Kind::Phase; });
    }

    void requireName(const DraftNamed& draft, Column column)
    {
        if (!draft.name.isGiven()) {
            problem(draft.place, column, "there is no name");
        }
    }

    DescriptorText substanceText(const DraftSubstance& draft, long id)
    {
        requireName(draft, Column::Substance);
        DescriptorText text;
        const std::string composition = compositionOf(draft);
        text.set(textOf(Key::Composition), composition);
        text.set(textOf(Key::ID), std::to_string(id));
        text.set(textOf(Key::Mixture), composition.empty() ? "0" : "1");
        setNewTexts(state_.tables, text, TextKey::Name, draft.name.text, draft.russianName.text);
        setNewTexts(state_.tables, text, TextKey::Comment, draft.comment.text, draft.russianComment.text);
        applyKeys(text, substanceKeys(draft, nullptr));
        return text;
    }

    std::vector<KeyChange> substanceKeys(const DraftSubstance& draft, const Descriptor* present)
    {
        std::vector<KeyChange> keys;
        takeKey(keys, present, DescriptorOf::Substance, format::formulaKey, draft.formula, Column::Formula);
        takeKey(keys, present, DescriptorOf::Substance, format::aliasesKey, draft.aliases, Column::Aliases);
        takeKey(keys, present, DescriptorOf::Substance, format::casKey, draft.cas, Column::Cas);
        return keys;
    }

    void extendSubstance(const DraftSubstance& draft, const SubstanceTree& present)
    {
        const Descriptor& descriptor = present.self.descriptor;
        std::vector<TextChange> texts;
        takeText(texts, descriptor, TextKey::Name, Language::Russian, draft.russianName, Column::SubstanceRu);
        takeText(
            texts, descriptor, TextKey::Comment, state_.language, draft.comment, Column::SubstanceComment);
        takeText(texts, descriptor, TextKey::Comment, Language::Russian, draft.russianComment,
            Column::SubstanceCommentRu);
        const std::string composition = compositionOf(draft);
        if (!composition.empty() && !isSameComposition(composition, descriptor)) {
            problem(draft.composition.isGiven() ? draft.composition.place : draft.compositionIds.place,
                Column::Composition, "the database has another composition of the mixture");
        }
        change(descriptor, texts, substanceKeys(draft, &descriptor));
    }

    static bool isSameComposition(const std::string& text, const Descriptor& present)
    {
        std::vector<COMPONENT> one, other;
        format::parseComposition(text, one);
        if (present.number(Key::Mixture) > 0) {
            format::parseComposition(present.text(Key::Composition), other);
        }
        return std::ranges::equal(one, other, [](const COMPONENT& a, const COMPONENT& b) {
            return a.matterId == b.matterId && a.molarFraction == b.molarFraction;
        });
    }

    /// The composition as descriptors have it; empty for a pure substance.
    std::string compositionOf(const DraftSubstance& draft)
    {
        const bool byNumber = draft.compositionIds.isGiven();
        const Given& given = byNumber ? draft.compositionIds : draft.composition;
        const Column column = byNumber ? Column::CompositionIds : Column::Composition;
        if (!given.isGiven()) {
            return {};
        }
        std::vector<COMPONENT> components;
        for (const std::string& part : splitAt(given.text, byNumber ? ";" : " + ")) {
            const auto component = byNumber ? componentByNumber(part) : componentByName(part);
            if (!component) {
                problem(given.place, column,
                    fmt::format("{} is no component: write {}", shown(part),
                        byNumber ? "\"NUMBER:FRACTION\", with \";\" between"
                                 : "\"FRACTION NAME\" of a substance, with \" + \" between"));
                return {};
            }
            components.push_back(*component);
        }
        std::string text = compositionText(components);
        checkFractions(given, column, components, text.size());
        return text;
    }

    void checkFractions(
        const Given& given, Column column, std::span<const COMPONENT> components, std::size_t length)
    {
        const double sum = format::sumOfFractions(components);
        const double roundingErrors
            = 1e-6 * static_cast<double>(components.size()); // of six digits, as the library writes
        if (!format::isSumAllowed(sum > format::maxSumOfFractions ? sum - roundingErrors : sum)) {
            problem(given.place, column,
                fmt::format("the molar fractions add up to {}; they must add up to 0.99 to 1", sum));
        }
        if (components.size() < 2) {
            problem(given.place, column, "a mixture has two components or more");
        }
        if (length + textOf(Key::Composition).size() + 6 > format::maxLineLength) {
            problem(given.place, column, "the mixture has too many components for a line of its file");
        }
    }

    std::optional<COMPONENT> componentByNumber(std::string_view part) const
    {
        const std::size_t colon = part.find(format::fractionSeparator);
        const auto id = asWholeNumber(part.substr(0, colon));
        const auto fraction
            = colon == std::string_view::npos ? std::nullopt : asFiniteNumber(part.substr(colon + 1));
        const bool is = id && fraction && substances_.byId.contains(*id);
        return is ? std::optional(COMPONENT { *id, *fraction }) : std::nullopt;
    }

    std::optional<COMPONENT> componentByName(const std::string& part) const
    {
        const std::size_t blank = part.find(' ');
        const auto fraction = asFiniteNumber(part.substr(0, blank));
        if (!fraction || blank == std::string::npos) {
            return std::nullopt;
        }
        const auto [first, last] = substances_.byName.equal_range(part.substr(blank + 1));
        const bool one = first != last && std::next(first) == last;
        return one ? std::optional(COMPONENT { substances_.all[first->second].id, *fraction }) : std::nullopt;
    }

    std::string makeEntity(const std::string& parent, format::Series series, std::string_view extension,
        const DescriptorText& text)
    {
        const std::string name = state_.names.next(parent, series);
        std::string directory = entryPath(parent, name);
        state_.changes.makeDirectory(directory);
        state_.changes.makeFile(entryPath(directory, fmt::format("{}.{}", name, extension)), text.bytes());
        return directory;
    }

    // Phases, phase changes and values

    void planOwners(
        const DraftSubstance& draft, long id, const std::string& directory, const SubstanceTree* present)
    {
        static const std::vector<Entity> nothing;
        Known phases = known(present ? present->phases : nothing, ofEntity);
        Known changes = known(present ? present->changes : nothing, ofEntity);
        for (const DraftOwner& owner : draft.owners) {
            if (owner.kind != Owner::Kind::Substance) {
                noteId(owner.kind == Owner::Kind::Phase ? phases : changes, owner);
            }
        }
        planValues(draft.owners.front(), { id, directory, present ? &present->self : nullptr, Owner() });
        for (const Owner::Kind kind : { Owner::Kind::Phase, Owner::Kind::Change }) { // changes name phases
            for (const DraftOwner& owner : draft.owners) {
                if (owner.kind == kind) {
                    planOwner(owner, id, directory, present, phases, changes);
                }
            }
        }
    }

    struct Place {
        long substance;
        std::string directory;
        const Entity* present; ///< null for a new owner
        Owner owner;
    };

    void planOwner(const DraftOwner& draft, long substance, const std::string& parent,
        const SubstanceTree* present, Known& phases, Known& changes)
    {
        const bool phase = draft.kind == Owner::Kind::Phase;
        const Known::One one = phase
            ? choose(phases, draft, "phase", Column::PhaseId, Column::Phase)
            : choose(changes, draft, "phase change", Column::ChangeId, Column::Change);
        Place place { substance, {}, nullptr, {} };
        place.owner.kind = draft.kind;
        place.owner.id = one.id;
        place.owner.name = one.name;
        if (one.descriptor) {
            place.present = &(phase ? present->phases : present->changes)[one.index];
            place.directory = place.present->directory;
            extendOwner(draft, *one.descriptor, phases);
            place.owner.state = static_cast<MATTER_STATE>(one.descriptor->number(Key::Aggreg));
        } else {
            const DescriptorText text = ownerText(draft, one.id, phases);
            place.directory
                = makeEntity(parent, phase ? format::Series::Phases : format::Series::PhaseChanges,
                    phase ? format::phaseExtension : format::phaseChangeExtension, text);
            place.owner.state = stateOf(draft.state.text).value_or(MATTER_STATE_NOT_GIVEN);
            ++counts_.owners;
            if (phase && !format::isState(place.owner.state)) {
                return; // that is a fault; what may follow from it is none
            }
        }
        planValues(draft, place);
    }

    DescriptorText ownerText(const DraftOwner& draft, long id, const Known& phases)
    {
        const bool phase = draft.kind == Owner::Kind::Phase;
        requireName(draft, phase ? Column::Phase : Column::Change);
        DescriptorText text;
        text.set(textOf(Key::ID), std::to_string(id));
        setNewTexts(state_.tables, text, TextKey::Name, draft.name.text, draft.russianName.text);
        if (phase) {
            const auto state = stateOf(draft.state.text);
            if (!state) {
                problem(draft.place, Column::State, "a new phase is solid, liquid or gas");
            }
            text.set(
                textOf(Key::Aggreg), std::to_string(static_cast<int>(state.value_or(MATTER_STATE_SOLID))));
            return text;
        }
        text.set(textOf(Key::Phase1), std::to_string(phaseOf(draft, draft.from, Column::ChangeFrom, phases)));
        text.set(textOf(Key::Phase2), std::to_string(phaseOf(draft, draft.to, Column::ChangeTo, phases)));
        return text;
    }

    /// The phase that a change leads from or to, by number or name.
    long phaseOf(const DraftOwner& draft, const Given& given, Column column, const Known& phases)
    {
        const auto number = asWholeNumber(given.text);
        if (number && phases.byId.contains(*number)) {
            return *number;
        }
        const auto [first, last] = phases.byName.equal_range(given.text);
        if (first != last && std::next(first) == last) {
            return phases.all[first->second].id;
        }
        problem(given.isGiven() ? given.place : draft.place, column,
            given.isGiven() ? fmt::format("{} is no phase of the substance", shown(given.text))
                            : std::string("a new phase change needs the phase, by name or number"));
        return 0;
    }

    void extendOwner(const DraftOwner& draft, const Descriptor& present, const Known& phases)
    {
        const bool phase = draft.kind == Owner::Kind::Phase;
        std::vector<TextChange> texts;
        takeText(texts, present, TextKey::Name, Language::Russian, draft.russianName,
            phase ? Column::PhaseRu : Column::ChangeRu);
        const auto state = static_cast<MATTER_STATE>(present.number(Key::Aggreg));
        if (phase && draft.state.isGiven() && draft.state.text != stateText(state)) {
            problem(draft.state.place, Column::State,
                fmt::format("the phase is {} in the database", stateText(state)));
        }
        const std::pair<const Given&, Key> ends[]
            = { { draft.from, Key::Phase1 }, { draft.to, Key::Phase2 } };
        for (const auto& [given, key] : ends) {
            const Column column = key == Key::Phase1 ? Column::ChangeFrom : Column::ChangeTo;
            if (given.isGiven() && phaseOf(draft, given, column, phases) != present.number(key)) {
                problem(given.place, column, "the phase change has another phase in the database");
            }
        }
        change(present, texts, {});
    }

    void planValues(const DraftOwner& draft, const Place& place)
    {
        for (const DraftValue& value : draft.values) {
            planValue(value, place);
        }
    }

    std::vector<std::string> commentsOf(const DraftValue& value) const
    {
        return value.comments.isGiven() ? splitAt(value.comments.text, commentSeparator)
                                        : std::vector<std::string>();
    }

    void planValue(const DraftValue& value, const Place& place)
    {
        const long parameter = descriptionIds_[value.description];
        const Descriptor* head = place.present ? findHead(*place.present, parameter) : nullptr;
        if (head && isThere(value, place, *head)) {
            ++counts_.same;
            return;
        }
        if (head && !replace_) {
            problem(value.place, Column::Value,
                "the database has another value of this; --replace takes the new one");
            return;
        }
        try {
            if (state_.tree.descriptions.end()
                != std::ranges::find(state_.tree.descriptions, parameter,
                    [](const Descriptor& one) { return one.number(Key::ID); })) {
                requireAllowed(edit_, parameter, value.type, value.table.components > 1, place.owner);
            } else if (newRules_.contains(parameter)) {
                requireNewRules(*newRules_.at(parameter), value);
            }
            head ? replaceValue(value, place, parameter) : makeNew(value, place, parameter);
        } catch (const Failure& failure) {
            problem(value.place, Column::Value, failure.what());
        }
    }

    /// Types and forms that rows give for a new description hold for its values.
    static void requireNewRules(const DraftDescription& draft, const DraftValue& value)
    {
        const bool typeFits = !draft.types.isGiven()
            || draft.types.text.find(format::letterOf(value.type)) != std::string::npos;
        const bool formFits = !draft.forms.isGiven()
            || draft.forms.text.find(value.table.components > 1 ? "vector" : "scalar") != std::string::npos;
        if (!typeFits || !formFits) {
            throw Failure("the rows do not allow the parameter a value of this type or form");
        }
    }

    std::vector<KeyChange> headKeys(const DraftValue& value) const
    {
        std::vector<KeyChange> keys;
        for (const auto& [key, given] : { std::pair { format::sourceKey, &value.source },
                 std::pair { format::accuracyKey, &value.accuracy } }) {
            if (given->isGiven()) {
                keys.push_back({ std::string(key), given->text });
            }
        }
        return keys;
    }

    void makeNew(const DraftValue& value, const Place& place, long parameter)
    {
        makeValue(state_, place.directory,
            { parameter, value.type, value.table, commentsOf(value), headKeys(value) });
        ++counts_.values;
    }

    void replaceValue(const DraftValue& value, const Place& place, long parameter)
    {
        ValueChange change { value.table, value.type, std::nullopt, headKeys(value) };
        if (value.comments.isGiven()) {
            change.comments = commentsOf(value);
        }
        setValue(edit_, place.substance, place.owner, parameter, change);
        ++counts_.replaced;
    }

    /// True when the database has the same value, with what the rows say about it.
    bool isThere(const DraftValue& value, const Place& place, const Descriptor& head) const
    {
        const auto agrees = [&](const Given& given, std::string_view key) {
            return !given.isGiven() || head.text(key) == given.text;
        };
        if (head.number(Key::Type) != static_cast<long>(value.type)
            || !agrees(value.source, format::sourceKey) || !agrees(value.accuracy, format::accuracyKey)) {
            return false;
        }
        const Annotations annotations(state_.directory);
        const std::string file = entryPath(place.present->directory, head.text(Key::Data));
        if (value.comments.isGiven() && annotations.comments(file) != value.comments.text) {
            return false;
        }
        try {
            return isSame(present_->value(place.substance, place.owner, head.number(Key::ID)), value.table);
        } catch (const UnreadableValue&) {
            return false;
        }
    }

    Edit& edit_;
    EditState& state_;
    const Database* present_;
    const Draft& draft_;
    Problems problems_;
    bool replace_;
    Known substances_;
    Known descriptions_;
    std::vector<long> descriptionIds_; ///< of the draft's
    std::vector<Known::One> chosen_; ///< of the draft's substances
    std::map<long, const DraftDescription*> newRules_;
    ImportCounts counts_;
};

} // namespace

ImportCounts planImport(
    Edit& edit, const Database* present, const Draft& draft, const std::string& name, bool replace)
{
    return Planner(edit, present, draft, name, replace).run();
}

} // namespace tool::writing
