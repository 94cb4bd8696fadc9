#include "writing/importDraft.h"

#include "common/characters.h"
#include "common/encodings.h"
#include "common/failure.h"
#include "common/names.h"
#include "common/numbers.h"
#include "input/records.h"
#include "writing/importColumns.h"

#include "format/items.h"
#include "format/vocabulary.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tool::writing {

namespace {

constexpr std::size_t sharedColumns = static_cast<std::size_t>(Column::FirstArgument);
constexpr std::size_t vectorSize = 3;

/// Most characters that a record holds of a text.
constexpr std::size_t longestName = std::extent_v<decltype(MATTER::name)> - 1;
constexpr std::size_t longestUnits = std::extent_v<decltype(PARAMETER::units)> - 1;

std::optional<double> numberOf(std::string_view text)
{
    constexpr double infinite = std::numeric_limits<double>::infinity();
    if (text == "nan" || text == "inf" || text == "-inf") {
        return text == "nan" ? std::numeric_limits<double>::quiet_NaN()
            : text == "inf"  ? infinite
                             : -infinite;
    }
    return asFiniteNumber(text);
}

/// The type of a value where rows give none.
PARAM_TYPE guessedType(std::size_t arguments, std::string_view first, std::string_view second)
{
    if (arguments == 0) {
        return PARAM_TYPE_CONSTANT;
    }
    if (arguments == 1) {
        const bool pressure = first == "pressure" || first == "p" || first == "P";
        return pressure ? PARAM_TYPE_TABLE_P : PARAM_TYPE_TABLE_T;
    }
    const auto isUsual = [](std::string_view name, std::size_t index) {
        return name.empty() || name == format::usualArgumentName(PARAM_TYPE_TABLE2D_T, index);
    };
    return isUsual(first, 0) && isUsual(second, 1) ? PARAM_TYPE_TABLE2D_T : PARAM_TYPE_TABLE2D_X;
}

class DraftReader {
public:
    explicit DraftReader(const std::string& name)
        : problems_(name, "nothing is imported")
    {
    }

    void add(const Record& record)
    {
        ++draft_.rows;
        place_ = record.place;
        fields_ = record.fields;
        decimalComma_ = record.decimalComma;
        const bool sameValue = value_ && std::equal(last_.begin(), last_.end(), fields_.begin());
        if (!sameValue) {
            value_ = nullptr;
            for (std::size_t i = 0; i < sharedColumns; ++i) {
                last_[i] = fields_[i];
            }
            addShared();
        }
        if (value_) {
            addNumber(*value_);
        }
        if (problems_.isFull()) {
            problems_.throwIfAny();
        }
    }

    Draft finish()
    {
        for (DraftSubstance& substance : draft_.substances) {
            for (DraftOwner& owner : substance.owners) {
                std::ranges::for_each(owner.values, [this](DraftValue& value) { closeValue(value); });
            }
        }
        problems_.throwIfAny();
        return std::move(draft_);
    }

private:
    std::string_view field(Column column) const { return fields_[static_cast<std::size_t>(column)]; }

    void problem(Column column, std::string_view what) { problems_.add(place_, nameOf(column), what); }

    /// What the rows of one value share.
    void addShared()
    {
        DraftSubstance* substance = findSubstance();
        DraftOwner* owner = substance ? findOwner(*substance) : nullptr;
        const bool hasParameter = !field(Column::Parameter).empty() || !field(Column::ParameterId).empty();
        const bool hasValue = !field(Column::Value).empty();
        if (!hasParameter) {
            if (hasValue) {
                problem(Column::Parameter, "the value belongs to no parameter; give its name or number");
            } else if (!substance) {
                problem(Column::Substance, "the row names neither a substance nor a parameter");
            }
            return;
        }
        const std::size_t description = findDescription();
        if (description == none || (substance && !owner)) {
            return;
        }
        if (owner && hasValue) {
            value_ = findValue(*owner, description);
        } else if (hasValue) {
            problem(Column::Substance, "the value belongs to no substance; give its name or number");
        } else if (!field(Column::FirstArgument).empty()) {
            problem(
                Column::Value, "there is no number; JSON has none for nan and inf: take CSV for such values");
        }
    }

    /// A number that identifies; nothing when the field is empty or none.
    std::optional<long> idOf(Column column)
    {
        const std::string_view text = field(column);
        const auto id = asWholeNumber(text);
        if (!text.empty() && !id) {
            problem(column, fmt::format("{} is no whole number", shown(text)));
        }
        return id;
    }

    bool isText(Column column, std::size_t longest)
    {
        const std::string_view text = field(column);
        const std::wstring wide = toWide(text);
        if (wide.size() > longest) {
            problem(column, fmt::format("{} has {} characters; {} fit", shown(text), wide.size(), longest));
        } else if (std::ranges::any_of(wide, isControl)) {
            problem(column, fmt::format("{} holds a control character", shown(text)));
        } else if (!wide.empty() && (isBlank(wide.front()) || isBlank(wide.back()))) {
            problem(column,
                fmt::format("{} begins or ends with a blank, which would be part of it", shown(text)));
        } else {
            return true;
        }
        return false;
    }

    /// Takes a text, which all rows that give it give alike.
    void take(Given& given, Column column, std::size_t longest = format::maxLineLength)
    {
        const std::string_view text = field(column);
        if (text.empty() || given.text == text) {
            return;
        }
        if (given.isGiven()) {
            problem(
                column, fmt::format("{} is {} in row {}", shown(text), shown(given.text), given.place.row));
        } else if (isText(column, longest)) {
            given = { std::string(text), place_ };
        }
    }

    /// Comments may hold blanks at their ends, and tabs.
    void takeComments(DraftValue& value)
    {
        const std::string_view text = field(Column::Comments);
        if (text.empty() || text == value.comments.text) {
            return;
        }
        const auto isLineEnd = [](char one) { return one == '\n' || one == '\r' || one == '\0'; };
        if (value.comments.isGiven()) {
            problem(Column::Comments,
                fmt::format("they are {} in row {}", shown(value.comments.text), value.comments.place.row));
        } else if (std::ranges::any_of(text, isLineEnd)) {
            problem(Column::Comments, "they hold the end of a line; write \" | \" between lines");
        } else {
            value.comments = { std::string(text), place_ };
        }
    }

    /// The one that a row means by number, else by name; a new one when there is none yet.
    template <class Named, class Fits>
    std::size_t find(std::vector<Named>& all, Column idColumn, Column nameColumn, Fits fits, Named made)
    {
        const auto id = idOf(idColumn);
        const std::string_view name = field(nameColumn);
        std::vector<std::size_t> found;
        for (std::size_t i = 0; i < all.size(); ++i) {
            if (fits(all[i]) && (id && all[i].id ? *all[i].id == *id : all[i].name.text == name)) {
                found.push_back(i);
            }
        }
        if (found.size() > 1) {
            problem(nameColumn, fmt::format("{} is the name of several; give the number", shown(name)));
            return none;
        }
        if (found.empty()) {
            if (!id && !field(idColumn).empty()) {
                return none;
            }
            made.place = place_;
            all.push_back(std::move(made));
            found.push_back(all.size() - 1);
        }
        Named& one = all[found.front()];
        one.id = id ? id : one.id;
        take(one.name, nameColumn, longestName);
        return found.front();
    }

    DraftSubstance* findSubstance()
    {
        if (field(Column::Substance).empty() && field(Column::SubstanceId).empty()) {
            return nullptr;
        }
        const std::string key = fmt::format("{}\n{}", field(Column::SubstanceId), field(Column::Substance));
        const auto [known, isNew] = substanceOf_.try_emplace(key, none);
        if (isNew) {
            known->second = find(
                draft_.substances, Column::SubstanceId, Column::Substance,
                [](const DraftSubstance&) { return true; }, DraftSubstance());
        }
        if (known->second == none) {
            return nullptr;
        }
        DraftSubstance& substance = draft_.substances[known->second];
        take(substance.russianName, Column::SubstanceRu, longestName);
        take(substance.comment, Column::SubstanceComment, longestName);
        take(substance.russianComment, Column::SubstanceCommentRu, longestName);
        take(substance.formula, Column::Formula);
        take(substance.aliases, Column::Aliases);
        take(substance.cas, Column::Cas);
        take(substance.composition, Column::Composition, std::numeric_limits<std::size_t>::max());
        take(substance.compositionIds, Column::CompositionIds);
        return &substance;
    }

    DraftOwner* findOwner(DraftSubstance& substance)
    {
        const bool phase = !field(Column::Phase).empty() || !field(Column::PhaseId).empty();
        const bool change = !field(Column::Change).empty() || !field(Column::ChangeId).empty();
        if (phase && change) {
            problem(Column::Change, "a value belongs to a phase or to a phase change, not to both");
            return nullptr;
        }
        return phase ? findPhase(substance) : change ? findChange(substance) : &substance.owners.front();
    }

    DraftOwner* findPhase(DraftSubstance& substance)
    {
        const auto isPhase = [](const DraftOwner& owner) { return owner.kind == Owner::Kind::Phase; };
        DraftOwner made;
        made.kind = Owner::Kind::Phase;
        const std::size_t index
            = find(substance.owners, Column::PhaseId, Column::Phase, isPhase, std::move(made));
        if (index == none) {
            return nullptr;
        }
        DraftOwner& owner = substance.owners[index];
        take(owner.russianName, Column::PhaseRu, longestName);
        take(owner.state, Column::State);
        return &owner;
    }

    DraftOwner* findChange(DraftSubstance& substance)
    {
        const auto isChange = [](const DraftOwner& owner) { return owner.kind == Owner::Kind::Change; };
        DraftOwner made;
        made.kind = Owner::Kind::Change;
        const std::size_t index
            = find(substance.owners, Column::ChangeId, Column::Change, isChange, std::move(made));
        if (index == none) {
            return nullptr;
        }
        DraftOwner& owner = substance.owners[index];
        take(owner.russianName, Column::ChangeRu, longestName);
        take(owner.from, Column::ChangeFrom);
        take(owner.to, Column::ChangeTo);
        return &owner;
    }

    std::size_t findDescription()
    {
        const std::size_t index = find(
            draft_.descriptions, Column::ParameterId, Column::Parameter,
            [](const DraftDescription&) { return true; }, DraftDescription());
        if (index == none) {
            return none;
        }
        DraftDescription& description = draft_.descriptions[index];
        take(description.russianName, Column::ParameterRu, longestName);
        take(description.units, Column::Units, longestUnits);
        take(description.russianUnits, Column::UnitsRu, longestUnits);
        take(description.symbol, Column::Symbol);
        take(description.argumentUnits, Column::ArgumentUnits);
        take(description.argumentNames, Column::ArgumentNames);
        take(description.types, Column::ParameterTypes);
        take(description.forms, Column::ParameterForms);
        take(description.states, Column::ParameterStates);
        return index;
    }

    DraftValue* findValue(DraftOwner& owner, std::size_t description)
    {
        const auto [known, isNew] = owner.valueOf.try_emplace(description, owner.values.size());
        if (isNew) {
            owner.values.push_back({ description, {}, {}, {}, {}, {}, place_, {}, 0 });
            if (!openValue(owner, owner.values.back())) {
                owner.values.pop_back();
                owner.valueOf.erase(known);
                return nullptr;
            }
        }
        DraftValue& value = owner.values[known->second];
        takeComments(value);
        take(value.source, Column::Source);
        take(value.accuracy, Column::Accuracy);
        return &value;
    }

    /// Takes type and form from the value's first row.
    bool openValue(const DraftOwner& owner, DraftValue& value)
    {
        Table& table = value.table;
        table.arguments = !field(Column::SecondArgument).empty() ? 2
            : !field(Column::FirstArgument).empty()              ? 1
                                                                 : 0;
        table.components = field(Column::Component).empty() ? 1 : vectorSize;
        const std::string_view letter = field(Column::Type);
        const std::size_t index = format::typeLetters.find(letter);
        if (letter.size() > 1 || (!letter.empty() && index == std::string_view::npos)) {
            problem(Column::Type, fmt::format("{} is none of the types C, t, p, T and X", shown(letter)));
            return false;
        }
        value.type = letter.empty() ? guessedType(
                         table.arguments, field(Column::FirstArgumentName), field(Column::SecondArgumentName))
                                    : static_cast<PARAM_TYPE>(index + 1);
        if (format::argumentsOf(value.type) != table.arguments) {
            problem(Column::Type,
                fmt::format("a value of type {} has {} arguments, and the row gives {}",
                    format::letterOf(value.type), format::argumentsOf(value.type), table.arguments));
            return false;
        }
        noteUse(owner, value);
        return true;
    }

    void noteUse(const DraftOwner& owner, const DraftValue& value)
    {
        DraftDescription& description = draft_.descriptions[value.description];
        description.usedTypes.insert(format::letterOf(value.type));
        (value.table.components > 1 ? description.vectorUsed : description.scalarUsed) = true;
        if (owner.kind == Owner::Kind::Phase) {
            for (std::size_t i = 0; i < format::stateLetters.size(); ++i) {
                if (stateText(static_cast<MATTER_STATE>(i + 1)) == owner.state.text) {
                    description.usedStates.insert(format::stateLetters[i]);
                }
            }
        }
        takeArgument(description, value.type, 0, Column::FirstArgumentName, Column::FirstArgumentUnits);
        takeArgument(description, value.type, 1, Column::SecondArgumentName, Column::SecondArgumentUnits);
    }

    void takeArgument(
        DraftDescription& description, PARAM_TYPE type, std::size_t argument, Column name, Column units)
    {
        if (argument >= format::argumentsOf(type)) {
            return;
        }
        const std::size_t item = format::itemIndexOf(type, argument);
        const bool usual = field(name) == format::usualArgumentName(type, argument);
        takeItem(description.namesOfArguments[item], name, usual ? std::string_view() : field(name));
        takeItem(description.unitsOfArguments[item], units, field(units));
    }

    /// What all values of a description share about an argument; only what rows say counts.
    void takeItem(std::optional<Given>& item, Column column, std::string_view text)
    {
        const bool same = item && item->text == text;
        if (same || (item && text.empty())) {
            return;
        }
        if (item && item->isGiven()) {
            problem(column,
                fmt::format("{} is {} in row {}, and all values of a parameter share it", shown(text),
                    shown(item->text), item->place.row));
        } else if (isText(column, format::maxLineLength)) {
            item = Given { std::string(text), place_ };
        }
    }

    std::optional<double> number(Column column)
    {
        std::string text(field(column));
        if (const std::size_t comma = text.find(','); decimalComma_ && comma != std::string::npos) {
            text[comma] = '.';
        }
        const auto value = numberOf(text);
        if (!value) {
            problem(column,
                field(column).empty() ? "there is no number"
                                      : fmt::format("{} is no number", shown(field(column))));
        }
        return value;
    }

    void addNumber(DraftValue& value)
    {
        const Table& table = value.table;
        Point point;
        const std::pair<Column, std::size_t> arguments[]
            = { { Column::FirstArgument, 0 }, { Column::SecondArgument, 1 } };
        for (const auto& [column, index] : arguments) {
            if (index >= table.arguments) {
                if (!field(column).empty()) {
                    return problem(column, "the rows of this value before have no such argument");
                }
                continue;
            }
            const auto argument = number(column);
            if (!argument) {
                return;
            }
            point.arguments[index] = *argument;
        }
        if (const auto component = number(Column::Value)) {
            addComponent(value, point, *component);
        }
    }

    void addComponent(DraftValue& value, const Point& point, double component)
    {
        Table& table = value.table;
        const std::size_t index = value.nextComponent;
        const std::string_view expected = componentName(table.components, index);
        if (field(Column::Component) != expected) {
            return problem(Column::Component,
                fmt::format("{} stands where {} should", shown(field(Column::Component)), shown(expected)));
        }
        if (index == 0) {
            if (!checkOrder(value, point)) {
                return;
            }
            table.points.push_back(point);
        } else if (table.points.back().arguments != point.arguments) {
            return problem(Column::FirstArgument, "the components of one vector have the same arguments");
        }
        table.points.back().components[index] = component;
        value.nextComponent = (index + 1) % table.components;
    }

    bool checkOrder(DraftValue& value, const Point& point)
    {
        const Table& table = value.table;
        if (table.arguments == 0) {
            if (!table.points.empty()) {
                problem(
                    Column::Value, fmt::format("the value has a number already, in row {}", value.place.row));
            }
            return table.points.empty();
        }
        const std::size_t last = table.arguments - 1;
        const bool sameTable = !table.points.empty()
            && (table.arguments == 1 || table.points.back().arguments[0] == point.arguments[0]);
        if (table.arguments == 2 && !sameTable && !value.firstArguments.insert(point.arguments[0]).second) {
            problem(Column::FirstArgument,
                fmt::format("the first argument {} has rows further up: they must stand together",
                    point.arguments[0]));
            return false;
        }
        const double argument = point.arguments[last];
        const bool increases = !sameTable || table.points.back().arguments[last] < argument;
        if (std::isnan(argument) || !increases) {
            problem(last == 0 ? Column::FirstArgument : Column::SecondArgument,
                fmt::format("the argument {} does not increase", numberText(argument)));
            return false;
        }
        return true;
    }

    void closeValue(const DraftValue& value)
    {
        if (value.nextComponent != 0) {
            problems_.add(value.place, nameOf(Column::Component),
                "the last vector of this value has not all of x, y and z");
        }
    }

    static constexpr std::size_t none = static_cast<std::size_t>(-1);

    Problems problems_;
    Draft draft_;
    RowPlace place_;
    std::span<const std::string_view> fields_;
    bool decimalComma_ = false;
    std::array<std::string, sharedColumns> last_; ///< the fields of the row before
    DraftValue* value_ = nullptr; ///< that of the row before
    std::map<std::string, std::size_t> substanceOf_; ///< by number and name, as rows give them
};

} // namespace

Draft readDraft(std::string_view bytes, const std::string& name, const std::function<void()>& eachRow)
{
    DraftReader reader(name);
    readRecords(bytes, name, columnNames, [&](const Record& record) {
        reader.add(record);
        eachRow();
    });
    return reader.finish();
}

} // namespace tool::writing
