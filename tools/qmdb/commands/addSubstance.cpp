#include "commands/commands.h"

#include "commands/owners.h"
#include "commands/phaseOptions.h"
#include "common/names.h"
#include "common/numbers.h"
#include "common/vocabulary.h"
#include "database/DatabaseLock.h"
#include "input/recordTexts.h"

#include <algorithm>
#include <optional>

namespace tool {

namespace {

struct SubstanceOptions {
    Location location;
    std::string name;
    std::string comment;
    std::vector<std::string> components;
    PhaseOptions phases;
};

/// "Copper:0.9" or "1:0.9"; the last colon separates, as a name may hold others.
COMPONENT componentOf(const Resolver& resolver, const std::string& text)
{
    const std::size_t colon = text.rfind(':');
    const auto fraction = colon == std::string::npos
        ? std::nullopt
        : asFiniteNumber(std::string_view(text).substr(colon + 1));
    if (!fraction || !(*fraction > 0)) {
        throw Failure("\"{}\" is no component: write SUBSTANCE:FRACTION with a fraction above 0", text);
    }
    return { resolver.substance(text.substr(0, colon)).id, *fraction };
}

std::vector<COMPONENT> compositionOf(const Resolver& resolver, const std::vector<std::string>& texts)
{
    std::vector<COMPONENT> composition;
    double sum = 0;
    for (const std::string& text : texts) {
        const COMPONENT component = componentOf(resolver, text);
        if (std::ranges::count(composition, component.matterId, &COMPONENT::matterId) > 0) {
            throw Failure("\"{}\": this component is named twice", text);
        }
        composition.push_back(component);
        sum += composition.back().molarFraction;
    }
    if (texts.size() == 1) {
        throw Failure("a mixture has two components or more");
    }
    // The library refuses these too, but only after it has made the substance's directory.
    if (!texts.empty() && !vocabulary::isSumAllowed(sum)) {
        throw Failure("the molar fractions add up to {}; they must add up to 0.99 to 1", sum);
    }
    return composition;
}

int runAddSubstance(const SubstanceOptions& options)
{
    const std::vector<PHASE> phases = phaseRecords(options.phases);
    const DatabaseLock lock(options.location.directory);
    Database database(options.location);
    const Annotations annotations(options.location.directory);
    auto composition = compositionOf(Resolver(database, annotations), options.components);
    MATTER record {};
    setName(record.name, options.name, "the name");
    setText(record.comment, options.comment, "the comment");
    record.mixture = composition.empty() ? 0 : 1;
    record.compositionCount = static_cast<long>(composition.size());
    if (!composition.empty()) {
        record.composition = new COMPONENT[composition.size()]; // the record frees it
        std::ranges::copy(composition, record.composition);
    }
    Output output;
    const long id = database.addSubstance(record);
    output.print("added substance {}\n", label(options.name, id));
    addPhases(database, id, phases, output);
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
    command->add_option("--comment", options->comment, "Comment");
    command
        ->add_option("--component", options->components,
            "Component of a mixture and its molar fraction; once for each component")
        ->type_name("SUBSTANCE:FRACTION")
        ->allow_extra_args(false);
    addPhaseOptions(*command, options->phases);
}

} // namespace tool
