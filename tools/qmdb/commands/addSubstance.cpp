#include "commands/addSubstance.h"

#include "commands/phaseOptions.h"
#include "common/names.h"
#include "input/recordTexts.h"

#include <charconv>

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
COMPONENT componentOf(const std::vector<Substance>& substances, const std::string& text)
{
    const std::size_t colon = text.rfind(':');
    double fraction = 0;
    const char* begin = text.data() + (colon == std::string::npos ? text.size() : colon + 1);
    const auto [end, error] = std::from_chars(begin, text.data() + text.size(), fraction);
    if (error != std::errc() || end != text.data() + text.size() || !(fraction > 0)) {
        throw Failure("\"{}\" is no component: write SUBSTANCE:FRACTION with a fraction above 0", text);
    }
    return { choose(substances, text.substr(0, colon), "substance").id, fraction };
}

std::vector<COMPONENT> compositionOf(
    const std::vector<Substance>& substances, const std::vector<std::string>& texts)
{
    std::vector<COMPONENT> composition;
    double sum = 0;
    for (const std::string& text : texts) {
        composition.push_back(componentOf(substances, text));
        sum += composition.back().molarFraction;
    }
    if (texts.size() == 1) {
        throw Failure("a mixture has two components or more");
    }
    // The library refuses these too, but only after it has made the substance's directory.
    if (!texts.empty() && (sum > 1 || sum < 0.99)) {
        throw Failure("the molar fractions add up to {}; they must add up to 0.99 to 1", sum);
    }
    return composition;
}

int runAddSubstance(const SubstanceOptions& options)
{
    Database database(options.location);
    const std::vector<PHASE> phases = phaseRecords(options.phases);
    auto composition = compositionOf(database.substances(), options.components);
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
