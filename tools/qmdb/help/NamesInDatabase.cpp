#include "help/NamesInDatabase.h"

#include "commands/subcommand.h"

#include <algorithm>
#include <cstdlib>

namespace tool {

namespace {

/// The shell has not replaced it yet on a line that is being written.
std::string expandHome(const std::string& directory)
{
    const char* home = std::getenv("HOME");
    return home && (directory == "~" || directory.starts_with("~/")) ? home + directory.substr(1) : directory;
}

Location locationOn(const CommandLine& line)
{
    const auto directories = line.values("DIR");
    const auto languages = line.values("LANGUAGE");
    Location location;
    location.directory = directories.empty() ? "" : expandHome(directories.front());
    location.language = languages.empty() ? location.language : languages.back();
    requireDatabase(location.directory);
    return location;
}

void append(std::vector<Candidate>& all, const std::vector<Candidate>& more)
{
    for (const Candidate& candidate : more) {
        if (std::ranges::find(all, candidate) == all.end()) {
            all.push_back(candidate);
        }
    }
}

std::string ownerDescription(const Owner& owner)
{
    return owner.kind == Owner::Kind::Phase ? stateText(owner.state) : "phase change";
}

std::vector<Candidate> namesOf(const std::vector<Owner>& owners)
{
    std::vector<Candidate> names;
    for (const Owner& owner : owners) {
        append(names, { { owner.name, ownerDescription(owner) } });
    }
    return names;
}

} // namespace

NamesInDatabase::NamesInDatabase(const CommandLine& line)
    : database_(locationOn(line))
    , annotations_(expandHome(line.values("DIR").front()))
    , resolver_(database_, annotations_)
    , owners_ { line.values("PHASE"), line.values("CHANGE") }
{
    for (const std::string& text : line.values("SUBSTANCE")) {
        materials_.push_back({ resolver_.substance(text), {} });
    }
    for (const std::string& text : line.values("MATERIAL")) {
        materials_.push_back(resolver_.material(text, {}));
    }
}

std::vector<Candidate> NamesInDatabase::substances() const
{
    Names names;
    for (const Substance& substance : database_.substances()) {
        names.push_back({ substance.name, substance.comment });
    }
    return names;
}

std::vector<Candidate> NamesInDatabase::materials(std::string_view word) const
{
    Names names = substances();
    const std::size_t colon = word.rfind(':');
    const std::string named(word.substr(0, colon));
    const bool exact = std::ranges::find(names, Candidate { named }) != names.end();
    if (named.empty() || (colon == std::string_view::npos && !exact)) {
        return names;
    }
    try {
        const Substance substance = resolver_.substance(named);
        for (const Owner& owner : database_.owners(substance.id)) {
            if (owner.kind != Owner::Kind::Substance) {
                append(names, { { named + ":" + owner.name, ownerDescription(owner) } });
            }
        }
    } catch (const Failure&) { // the colon belongs to the name of another substance
    }
    return names;
}

std::vector<Candidate> NamesInDatabase::phases() const
{
    Names names;
    for (const Material& material : materials_) {
        append(names, namesOf(database_.phases(material.substance.id)));
    }
    return names;
}

std::vector<Candidate> NamesInDatabase::changes() const
{
    Names names;
    for (const Material& material : materials_) {
        append(names, namesOf(database_.changes(material.substance.id)));
    }
    return names;
}

std::vector<Candidate> NamesInDatabase::parametersOf(const Material& material) const
{
    const bool byColon = !material.owners.empty() && material.owners.front().kind != Owner::Kind::Substance;
    const bool byOptions = !owners_.phases.empty() || !owners_.changes.empty();
    std::vector<Owner> owners = material.owners;
    if (!byColon) {
        owners = byOptions ? resolver_.owners(material.substance, owners_)
                           : database_.owners(material.substance.id);
    }
    Names names;
    for (const Owner& owner : owners) {
        for (const Parameter& parameter : database_.parameters(material.substance.id, owner)) {
            append(names, { { parameter.name, parameter.units } });
        }
    }
    return names;
}

std::vector<Candidate> NamesInDatabase::parameters() const
{
    if (materials_.empty()) {
        Names names;
        for (const Substance& substance : database_.substances()) {
            append(names, parametersOf({ substance, {} }));
        }
        return names;
    }
    Names names = parametersOf(materials_.front());
    for (const Material& material : materials_) {
        const Names has = parametersOf(material);
        std::erase_if(
            names, [&](const Candidate& name) { return std::ranges::find(has, name) == has.end(); });
    }
    return names;
}

std::vector<Candidate> NamesInDatabase::describedParameters() const
{
    Names names;
    for (const Material& material : materials_) {
        const bool wholly = owners_.phases.empty() && owners_.changes.empty();
        const std::vector<Owner> owners = wholly ? database_.phases(material.substance.id)
                                                 : resolver_.owners(material.substance, owners_);
        for (const Owner& owner : owners) {
            if (owner.kind != Owner::Kind::Phase) {
                continue;
            }
            for (const Description& description : database_.descriptions(material.substance.id, owner.id)) {
                append(names, { { description.name, description.units } });
            }
        }
        for (const Substance& substance : wholly ? database_.substances() : std::vector<Substance>()) {
            append(names, parametersOf({ substance, {} }));
        }
    }
    return names;
}

} // namespace tool
