#include "commands/commands.h"

#include "commands/editing.h"
#include "commands/mixtureOptions.h"
#include "commands/phaseOptions.h"
#include "common/leftovers.h"
#include "common/names.h"
#include "input/recordTexts.h"
#include "writing/composition.h"

#include <algorithm>
#include <iterator>

namespace tool {

namespace {

struct SubstanceOptions {
    Location location;
    std::string name;
    std::string comment;
    std::vector<std::string> components;
    PhaseOptions phases;
    TextOptions texts; ///< beside those of the language of --lang
    KeyOptions keys { writing::DescriptorOf::Substance };
};

constexpr long noSubstance = -1;

/// The library adds the fractions up without regard to rounding.
void fill(MATTER& record, const SubstanceOptions& options, const std::vector<COMPONENT>& composition)
{
    setName(record.name, options.name, "the name");
    setText(record.comment, options.comment, "the comment");
    record.mixture = composition.empty() ? 0 : 1;
    record.compositionCount = static_cast<long>(composition.size());
    if (!composition.empty()) {
        record.composition = new COMPONENT[composition.size()]; // the record frees it
        std::ranges::copy(composition, record.composition);
        roundDown({ record.composition, composition.size() });
    }
}

/// What the record does not hold: texts in Russian, keys, and fractions to their last digit.
writing::DescriptorChange restOf(const SubstanceOptions& options, const std::vector<COMPONENT>& composition)
{
    writing::DescriptorChange rest { options.texts.changes(options.location.language),
        options.keys.changes() };
    if (!composition.empty()) {
        std::ranges::move(writing::compositionKeys(composition), std::back_inserter(rest.keys));
    }
    return rest;
}

int runAddSubstance(const SubstanceOptions& options)
{
    const std::vector<PHASE> phases = phaseRecords(options.phases);
    LockedDatabase at(options.location);
    const std::vector<COMPONENT> composition = compositionOf(at.resolver, options.components);
    MATTER record {};
    fill(record, options, composition);
    const writing::DescriptorChange rest = restOf(options, composition);
    requireAddition(options.location, noSubstance, Owner::Kind::Substance, rest);
    const PutOffSignals putOff; // all of it, or nothing
    Output output;
    const long id = at.database.addSubstance(record);
    output.print("added substance {}\n", label(options.name, id));
    addPhases(at.database, id, phases, output);
    completeAddition(options.location, id, Owner(), rest, label(options.name, id));
    output.finish();
    return ExitDone;
}

} // namespace

void addSubstanceCommand(CLI::App& add, Action& action)
{
    const auto options = std::make_shared<SubstanceOptions>();
    CLI::App* command = addCommand(add, action, "substance",
        "Add a substance with its first phases: without a phase it would not be found again", options,
        runAddSubstance);
    command->add_option("NAME", options->name, "Name of the new substance")->required();
    command->add_option("--comment", options->comment, "Comment")->type_name("TEXT");
    options->texts.addRussian(*command, writing::TextKey::Name, "--name-ru", "Name");
    options->texts.addRussian(*command, writing::TextKey::Comment, "--comment-ru", "Comment");
    addSubstanceKeys(*command, options->keys);
    addComponentOption(*command, options->components,
        "Component of a mixture and its molar fraction; once for each component");
    addPhaseOptions(*command, options->phases);
    command->footer(
        "Examples:\n"
        "  qmdb add substance mine Water --comment H2O --liquid Liquid --gas Steam\n"
        "  qmdb add substance materials Gilding --component Copper:0.95 --component Zinc:0.05 --solid Solid");
}

} // namespace tool
