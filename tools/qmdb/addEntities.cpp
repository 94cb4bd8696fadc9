#include "Output.h"
#include "add.h"
#include "names.h"

#include <charconv>

namespace tool {

namespace {

/// Phases to add, by aggregate state.
struct PhaseOptions {
    std::vector<std::string> solid;
    std::vector<std::string> liquid;
    std::vector<std::string> gas;
};

struct SubstanceOptions {
    Location location;
    std::string name;
    std::string comment;
    std::vector<std::string> components;
    PhaseOptions phases;
};

struct NewPhaseOptions {
    Location location;
    std::string substance;
    PhaseOptions phases;
};

struct ChangeOptions {
    Location location;
    std::string substance;
    std::string name;
    std::string from;
    std::string to;
};

void addPhaseOptions(CLI::App& command, PhaseOptions& options)
{
    auto* group = command.add_option_group("Phases", "One or more of these");
    group->add_option("--solid", options.solid, "Name of a solid phase");
    group->add_option("--liquid", options.liquid, "Name of a liquid phase");
    group->add_option("--gas", options.gas, "Name of a gas phase");
    group->require_option(1, 0);
    for (CLI::Option* option : group->get_options()) {
        option->type_name("NAME")->allow_extra_args(false);
    }
}

std::vector<PHASE> phaseRecords(const PhaseOptions& options)
{
    std::vector<PHASE> records;
    const auto append = [&](const std::vector<std::string>& names, MATTER_STATE state) {
        for (const std::string& name : names) {
            records.push_back({ 0, {}, state });
            setName(records.back().name, name, "the phase's name");
        }
    };
    append(options.solid, MATTER_STATE_SOLID);
    append(options.liquid, MATTER_STATE_LIQUID);
    append(options.gas, MATTER_STATE_GAS);
    for (auto record = records.begin(); record != records.end(); ++record) {
        const auto same = [&](const PHASE& other) { return std::wstring_view(other.name) == record->name; };
        if (std::any_of(records.begin(), record, same)) {
            throw Failure("two phases are called \"{}\"", toUtf8(record->name));
        }
    }
    return records;
}

void addPhases(Database& database, long substance, const std::vector<PHASE>& records, Output& output)
{
    for (const PHASE& record : records) {
        const long id = database.addPhase(substance, record);
        output.print("added phase {}, {}\n", label(toUtf8(record.name), id), stateText(record.aggreg));
    }
}

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

int runAddPhase(const NewPhaseOptions& options)
{
    Database database(options.location);
    const std::vector<PHASE> phases = phaseRecords(options.phases);
    const Substance substance = choose(database.substances(), options.substance, "substance");
    Output output;
    addPhases(database, substance.id, phases, output);
    output.finish();
    return ExitDone;
}

int runAddChange(const ChangeOptions& options)
{
    Database database(options.location);
    const Substance substance = choose(database.substances(), options.substance, "substance");
    const auto phases = database.phases(substance.id);
    const std::string kind = fmt::format("phase of {}", substance.name);
    const Owner from = choose(phases, options.from, kind);
    const Owner to = choose(phases, options.to, kind);
    if (from.id == to.id) {
        throw Failure("a phase change leads from one phase to another");
    }
    PHASECHANGE record { 0, {}, from.id, to.id };
    setName(record.name, options.name, "the name");
    const long id = database.addChange(substance.id, record);
    Output output;
    output.print("added phase change {}, {} to {}\n", label(options.name, id), from.name, to.name);
    output.finish();
    return ExitDone;
}

} // namespace

void setText(std::span<wchar_t> field, const std::string& text, std::string_view what)
{
    const std::wstring wide = toWide(text);
    if (wide.size() >= field.size()) {
        throw Failure("{} has {} characters; {} fit", what, wide.size(), field.size() - 1);
    }
    if (std::ranges::any_of(wide, [](wchar_t character) { return character > 0 && character < L' '; })) {
        throw Failure("{} holds a control character", what);
    }
    std::ranges::copy(wide, field.begin());
}

void setName(std::span<wchar_t> field, const std::string& text, std::string_view what)
{
    if (text.empty()) {
        throw Failure("{} is empty", what);
    }
    setText(field, text, what);
}

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

void addPhaseCommand(CLI::App& add, Action& action)
{
    const auto options = std::make_shared<NewPhaseOptions>();
    CLI::App* command = addCommand(add, action, "phase", "Add phases to a substance", options, runAddPhase);
    command->add_option("SUBSTANCE", options->substance, "Substance, by name or number")->required();
    addPhaseOptions(*command, options->phases);
}

void addChangeCommand(CLI::App& add, Action& action)
{
    const auto options = std::make_shared<ChangeOptions>();
    CLI::App* command
        = addCommand(add, action, "change", "Add a phase change to a substance", options, runAddChange);
    command->add_option("SUBSTANCE", options->substance, "Substance, by name or number")->required();
    command->add_option("NAME", options->name, "Name of the new phase change")->required();
    command->add_option("--from", options->from, "Phase before the change")->required()->type_name("PHASE");
    command->add_option("--to", options->to, "Phase after the change")->required()->type_name("PHASE");
}

void addAddCommand(CLI::App& app, Action& action)
{
    CLI::App* add = app.add_subcommand("add", "Add substances, phases, phase changes and parameters");
    add->require_subcommand(1);
    addSubstanceCommand(*add, action);
    addPhaseCommand(*add, action);
    addChangeCommand(*add, action);
    addParameterCommand(*add, action);
}

} // namespace tool
