#include "annotations/Annotations.h"

#include "annotations/scan.h"
#include "common/characters.h"
#include "common/encodings.h"
#include "database/flatTable.h"

#include "format/descriptor.h"
#include "format/innerText.h"
#include "format/items.h"
#include "format/keys.h"
#include "format/numbers.h"

#include <algorithm>
#include <array>
#include <fmt/format.h>
#include <tuple>
#include <type_traits>
#include <unordered_map>
#include <utility>

namespace tool {

namespace {

using Keys = std::map<std::string, std::string, std::less<>>;

/// The keys of a descriptor; of one that occurs twice the last counts.
Keys readKeys(std::string_view root, std::string_view file)
{
    Keys values;
    format::CDescriptorParser parser;
    forEachLine(root, file, [&](std::string_view bytes) {
        if (parser.parse(bytes) == format::CDescriptorParser::Result::Entry) {
            values.insert_or_assign(std::string(parser.key()), std::string(parser.value()));
        }
    });
    return values;
}

/// A value in UTF-8; empty when there is no such key.
std::string textOf(const Keys& values, std::string_view key)
{
    const auto found = values.find(key);
    if (found == values.end() || format::text::isPlain(found->second)) {
        return found == values.end() ? std::string() : found->second;
    }
    return toUtf8(toWide(found->second));
}

long idOf(const Keys& values)
{
    const auto found = values.find(textOf(format::Key::ID));
    return found == values.end() ? 0 : format::wstr2long(found->second);
}

std::vector<std::string> aliasesOf(const Keys& values)
{
    std::vector<std::string> aliases;
    const std::string text = textOf(values, format::aliasesKey);
    for (const std::string_view item : format::splitItems(text)) {
        if (!item.empty()) {
            aliases.emplace_back(item);
        }
    }
    return aliases;
}

/// Things by ID, and how many there are of each.
template <class Notes, class Id = long>
class Unique {
public:
    void add(Id id, Notes notes)
    {
        const auto [known, isNew] = all_.try_emplace(id, std::move(notes), 1);
        known->second.second += isNew ? 0 : 1;
    }

    /// Empty unless there is exactly one.
    Notes find(Id id) const
    {
        const auto found = all_.find(id);
        return found == all_.end() || found->second.second > 1 ? Notes() : found->second.first;
    }

private:
    std::map<Id, std::pair<Notes, std::size_t>> all_;
};

/// A text as a descriptor gives it: what it is without a string table, and its ID in one.
struct TextKeys {
    std::string text;
    std::string id;
};

TextKeys textKeysOf(const Keys& values, format::Key text, format::Key id)
{
    return { textOf(values, textOf(text)), textOf(values, textOf(id)) };
}

TextKeys nameOf(const Keys& values)
{
    return textKeysOf(values, format::Key::Name, format::Key::NameID);
}

template <class Notes>
struct Named {
    Notes notes;
    TextKeys name;
    TextKeys units {}; ///< of a description
};

ArgumentNotes argumentOf(const DescriptionNotes& description, PARAM_TYPE type, std::size_t index)
{
    const std::string given(format::argumentItem(description.argumentName, type, index));
    ArgumentNotes notes;
    notes.name = given.empty() ? std::string(format::usualArgumentName(type, index)) : given;
    notes.units = format::argumentItem(description.argumentUnits, type, index);
    notes.symbol = given.empty() ? std::string(argumentNames(type)[index]) : given;
    return notes;
}

} // namespace

std::string aliasesText(const SubstanceNotes& notes)
{
    return fmt::format("{}", fmt::join(notes.aliases, std::string(1, format::itemSeparator)));
}

std::string ArgumentNotes::label() const
{
    return fmt::format("{}{}{}", symbol, units.empty() ? "" : ", ", units);
}

std::string sourceText(const ValueNotes& notes)
{
    const std::string accuracy
        = notes.accuracy.empty() ? "" : fmt::format("accuracy {}", printable(notes.accuracy));
    if (notes.source.empty() || accuracy.empty()) {
        return printable(notes.source) + accuracy;
    }
    return fmt::format("{} ({})", printable(notes.source), accuracy);
}

std::vector<ArgumentNotes> argumentsOf(const DescriptionNotes& description, PARAM_TYPE type)
{
    std::vector<ArgumentNotes> arguments;
    for (std::size_t i = 0; i < format::argumentsOf(type); ++i) {
        arguments.push_back(argumentOf(description, type, i));
    }
    return arguments;
}

/// The substances: what their descriptors tell, and where they lie.
struct Annotations::Substances {
    explicit Substances(const std::string& root)
    {
        for (const std::string& directory : scan(root, "").directories) {
            for (const std::string& name : scan(root, directory).filesWith(format::substanceExtension)) {
                add(directory, readKeys(root, entryPath(directory, name)));
            }
        }
    }

    void add(const std::string& directory, const Keys& values)
    {
        const long id = idOf(values);
        notes.add(id,
            { { textOf(values, format::formulaKey), aliasesOf(values), textOf(values, format::casKey) },
                nameOf(values) });
        directories.emplace(id, directory);
    }

    Unique<Named<SubstanceNotes>> notes;
    std::unordered_multimap<long, std::string> directories;
};

struct Annotations::Descriptions {
    explicit Descriptions(const std::string& root)
    {
        for (const std::string& name : scan(root, "").filesWith(format::descriptionExtension)) {
            const Keys values = readKeys(root, name);
            notes.add(idOf(values),
                { { textOf(values, format::symbolKey), textOf(values, format::argumentUnitsKey),
                      textOf(values, format::argumentNameKey) },
                    nameOf(values), textKeysOf(values, format::Key::Units, format::Key::UnitsID) });
        }
    }

    Unique<Named<DescriptionNotes>> notes;
};

/// The values of the substances with one ID. A value that only one of them has is the one that is shown.
struct Annotations::Values {
    using Place = std::tuple<Owner::Kind, long, long>;

    Values(const std::string& root, const Substances& substances, long substance)
        : root(root)
        , substance(substance)
    {
        const auto [first, last] = substances.directories.equal_range(substance);
        for (auto place = first; place != last; ++place) {
            addSubstance(place->second);
        }
    }

    ValueNotes find(const Owner& owner, long parameter) const
    {
        const long id = owner.kind == Owner::Kind::Substance ? Owner().id : owner.id;
        const auto found = notes.find({ owner.kind, id, parameter });
        return found == notes.end() || found->second.second > 1 ? ValueNotes() : found->second.first;
    }

    void addSubstance(const std::string& directory)
    {
        const Scan listing = scan(root, directory);
        addHeads(directory, listing, Owner::Kind::Substance, Owner().id);
        for (const std::string& name : listing.directories) {
            const std::string below = entryPath(directory, name);
            const Scan entries = scan(root, below);
            addOwners(below, entries, format::phaseExtension, Owner::Kind::Phase);
            addOwners(below, entries, format::phaseChangeExtension, Owner::Kind::Change);
        }
    }

    void addOwners(
        const std::string& directory, const Scan& listing, std::string_view extension, Owner::Kind kind)
    {
        for (const std::string& name : listing.filesWith(extension)) {
            const Keys values = readKeys(root, entryPath(directory, name));
            owners.add({ kind, idOf(values) }, nameOf(values));
            addHeads(directory, listing, kind, idOf(values));
        }
    }

    void addHeads(const std::string& directory, const Scan& listing, Owner::Kind kind, long owner)
    {
        for (const std::string& name : listing.filesWith(format::headExtension)) {
            const auto values = readKeys(root, entryPath(directory, name));
            const auto data = values.find(textOf(format::Key::Data));
            ValueNotes head { textOf(values, format::sourceKey), textOf(values, format::accuracyKey),
                data == values.end() ? std::string() : entryPath(directory, data->second) };
            const auto [known, isNew]
                = notes.try_emplace({ kind, owner, idOf(values) }, std::move(head), std::size_t { 1 });
            known->second.second += isNew ? 0 : 1;
        }
    }

    const std::string& root;
    long substance;
    std::map<Place, std::pair<ValueNotes, std::size_t>> notes;
    Unique<TextKeys, std::pair<Owner::Kind, long>> owners;
};

/// The texts of both languages.
struct Annotations::StringTables {
    explicit StringTables(const std::string& root)
        : tables { readKeys(root, format::defaultTable), readKeys(root, format::russianTable) }
    {
    }

    std::vector<std::string> texts(const TextKeys& keys) const
    {
        std::vector<std::string> texts;
        for (const Keys& table : tables) {
            const auto found = keys.id.empty() ? table.end() : table.find(keys.id);
            const std::string text = found == table.end() ? keys.text : textOf(table, keys.id);
            if (!text.empty() && std::ranges::find(texts, text) == texts.end()) {
                texts.push_back(text);
            }
        }
        return texts;
    }

    std::array<Keys, 2> tables;
};

Annotations::Annotations(std::string directory)
    : directory_(std::move(directory))
{
}

Annotations::~Annotations() = default;

void Annotations::readAhead()
{
    substancesAhead_
        = std::async(std::launch::async, [this] { return std::make_unique<const Substances>(directory_); });
}

const Annotations::Substances& Annotations::substances() const
{
    if (!substances_) {
        substances_ = substancesAhead_.valid() ? substancesAhead_.get()
                                               : std::make_unique<const Substances>(directory_);
    }
    return *substances_;
}

const Annotations::Descriptions& Annotations::descriptions() const
{
    if (!descriptions_) {
        descriptions_ = std::make_unique<const Descriptions>(directory_);
    }
    return *descriptions_;
}

const Annotations::Values& Annotations::values(long substance) const
{
    if (!values_ || values_->substance != substance) {
        values_ = std::make_unique<const Values>(directory_, substances(), substance);
    }
    return *values_;
}

const Annotations::StringTables& Annotations::stringTables() const
{
    if (!stringTables_) {
        stringTables_ = std::make_unique<const StringTables>(directory_);
    }
    return *stringTables_;
}

SubstanceNotes Annotations::substance(long id) const
{
    return substances().notes.find(id).notes;
}

DescriptionNotes Annotations::description(long parameter) const
{
    return descriptions().notes.find(parameter).notes;
}

ValueNotes Annotations::value(long substance, const Owner& owner, long parameter) const
{
    return values(substance).find(owner, parameter);
}

std::vector<std::string> Annotations::names(long substance) const
{
    return stringTables().texts(substances().notes.find(substance).name);
}

std::vector<std::string> Annotations::descriptionNames(long parameter) const
{
    return stringTables().texts(descriptions().notes.find(parameter).name);
}

std::vector<std::string> Annotations::names(long substance, const Owner& owner) const
{
    return stringTables().texts(values(substance).owners.find({ owner.kind, owner.id }));
}

const ParameterNotes& Annotations::describe(const Parameter& parameter) const
{
    const auto [place, isNew] = described_.try_emplace({ parameter.id, parameter.type });
    if (isNew) {
        const DescriptionNotes described = description(parameter.id);
        place->second
            = { {}, described.symbol, argumentsOf(described, parameter.type), wholeUnits(parameter) };
    }
    return place->second;
}

/// What the units handed out begin, in either language.
std::string Annotations::wholeUnits(const Parameter& parameter) const
{
    constexpr std::size_t room = std::extent_v<decltype(PARAMETER::units)> - 1;
    if (toWide(parameter.units).size() == room) {
        for (const std::string& text : stringTables().texts(descriptions().notes.find(parameter.id).units)) {
            if (text.starts_with(parameter.units)) {
                return text;
            }
        }
    }
    return parameter.units;
}

ParameterNotes Annotations::parameter(long substance, const Owner& owner, const Parameter& parameter) const
{
    ParameterNotes notes = describe(parameter);
    static_cast<ValueNotes&>(notes) = value(substance, owner, parameter.id);
    return notes;
}

std::string Annotations::comments(const std::string& dataFile) const
{
    std::string comments;
    bool any = false;
    format::CLineDecoder decoder(false);
    forEachLine(directory_, dataFile, [&](std::string_view line) {
        const std::string_view text = decoder.decode(line);
        if (text.starts_with(format::commentSign)) {
            const std::size_t begin = text.substr(1).starts_with(' ') ? 2 : 1;
            comments += (std::exchange(any, true) ? " | " : "") + std::string(text.substr(begin));
        }
    });
    return comments;
}

} // namespace tool
