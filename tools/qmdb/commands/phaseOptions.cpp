#include "commands/phaseOptions.h"

#include "common/encodings.h"
#include "common/failure.h"
#include "common/names.h"
#include "input/recordTexts.h"

namespace tool {

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

} // namespace tool
