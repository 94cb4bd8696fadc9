#include "commands/commands.h"

#include "common/characters.h"
#include "comparison/compare.h"
#include "output/Output.h"
#include "output/Progress.h"
#include "output/json.h"

namespace tool {

namespace {

struct DiffOptions {
    Location one;
    std::string other;
    double tolerance = 0;
    bool json = false;
};

Json textJson(const std::optional<std::string>& text)
{
    return text ? Json(*text) : Json();
}

void printJson(Output& output, const std::vector<Difference>& differences)
{
    Json all = Json::array();
    for (const Difference& one : differences) {
        all.push_back({ { "kind", one.kind }, { "where", one.where }, { "what", one.what },
            { "before", textJson(one.before) }, { "after", textJson(one.after) } });
    }
    output.print("{}\n", dump(all, 1));
}

void printLine(Output& output, const Difference& one)
{
    const char sign = !one.before ? '+' : !one.after ? '-' : '~';
    const auto text = [](const std::optional<std::string>& text) {
        return text->empty() ? std::string("nothing") : printable(*text);
    };
    output.print("{} {} {}", sign, one.kind, printable(one.where));
    if (!one.what.empty()) {
        output.print(", {}: {}", one.what, one.before ? text(one.before) : text(one.after));
    }
    output.print("{}\n", one.before && one.after ? " -> " + text(one.after) : "");
}

int runDiff(const DiffOptions& options)
{
    requireDatabase(options.other);
    requireListable(options.other);
    Location second = options.one;
    second.directory = options.other;
    const Compared one(options.one);
    const Compared other(second);
    std::vector<Difference> differences;
    {
        Progress progress(one.substances.size());
        differences = compare(one, other, options.tolerance, [&] { progress.step(); });
    }
    Output output;
    if (options.json) {
        printJson(output, differences);
    } else {
        for (const Difference& difference : differences) {
            printLine(output, difference);
        }
        output.print("{} {}\n", differences.size(), differences.size() == 1 ? "difference" : "differences");
    }
    output.finish();
    return differences.empty() ? ExitDone : ExitFindings;
}

} // namespace

void addDiffCommand(CLI::App& app, Action& action)
{
    const auto options = std::make_shared<DiffOptions>();
    CLI::App* command = app.add_subcommand("diff", "Tell what differs between two databases");
    command->add_option("DIR", options->one.directory, "Directory of the first database")
        ->required()
        ->check(notEmpty());
    command->add_option("OTHER", options->other, "Directory of the second one")
        ->required()
        ->check(notEmpty());
    command
        ->add_option("--lang", options->one.language,
            "Language of the names: \"ru\" takes strings.lst, any other default.lst")
        ->type_name("LANGUAGE");
    command
        ->add_option("--tolerance", options->tolerance,
            "Numbers that differ by no more than this part of the larger one are the same")
        ->check(CLI::Range(0.0, 1.0));
    command->add_flag("--json", options->json, "As JSON");
    command->footer("Example:\n  qmdb diff materials copy --tolerance 1e-6");
    command->callback([&action, options] {
        action = [options] {
            requireDatabase(options->one.directory);
            requireListable(options->one.directory);
            return runDiff(*options);
        };
    });
}

} // namespace tool
