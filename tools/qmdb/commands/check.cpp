#include "commands/check.h"

#include "check/data.h"
#include "check/displayTexts.h"
#include "check/references.h"
#include "check/tree.h"
#include "output/Output.h"
#include "output/Progress.h"
#include "output/json.h"

namespace tool {

namespace {

struct CheckOptions {
    std::string directory;
    bool json = false;
};

std::string counted(std::size_t count, std::string_view noun)
{
    return fmt::format("{} {}{}", count, noun, count == 1 ? "" : "s");
}

void checkAllData(check::Context& context, const check::Tree& tree)
{
    Progress progress(tree.substances.size());
    for (const check::SubstanceTree& substance : tree.substances) {
        checkData(context, substance.self);
        for (const auto* entities : { &substance.phases, &substance.changes }) {
            for (const check::Entity& entity : *entities) {
                checkData(context, entity);
            }
        }
        progress.step();
    }
}

void printFinding(Output& output, const check::Finding& finding)
{
    const bool error = finding.severity == check::Severity::Error;
    const auto colour = error ? fmt::terminal_color::red : fmt::terminal_color::yellow;
    const std::string severity
        = output.styled(fmt::fg(colour) | fmt::emphasis::bold, error ? "error" : "warning");
    const std::string file = finding.place.file.empty() ? "." : finding.place.file;
    const std::string line = finding.place.line == 0 ? "" : fmt::format(":{}", finding.place.line);
    output.print("{}{}: {}: {}; {} [{}]\n", file, line, severity, finding.what, finding.advice, finding.kind);
}

void printText(Output& output, const check::Context& context)
{
    for (const check::Finding& finding : context.findings.all()) {
        printFinding(output, finding);
    }
    const std::size_t errors = context.findings.count(check::Severity::Error);
    const std::size_t warnings = context.findings.count(check::Severity::Warning);
    output.print("{}, {} in {}\n", counted(errors, "error"), counted(warnings, "warning"),
        counted(context.files, "file"));
}

Json toJson(const check::Finding& finding)
{
    const check::Place& place = finding.place;
    return { { "file", place.file }, { "line", place.line == 0 ? Json() : Json(place.line) },
        { "severity", finding.severity == check::Severity::Error ? "error" : "warning" },
        { "kind", finding.kind }, { "what", finding.what }, { "do", finding.advice } };
}

std::string reportJson(const CheckOptions& options, const check::Context& context)
{
    Json json { { "directory", options.directory }, { "files", context.files },
        { "errors", context.findings.count(check::Severity::Error) },
        { "warnings", context.findings.count(check::Severity::Warning) }, { "findings", Json::array() } };
    for (const check::Finding& finding : context.findings.all()) {
        json["findings"].push_back(toJson(finding));
    }
    return dump(json, 2);
}

int runCheck(const CheckOptions& options)
{
    requireDatabase(options.directory);
    check::Findings findings;
    check::Context context { options.directory, findings };
    const check::Tree tree = readTree(context);
    checkReferences(context, tree);
    checkTexts(context, tree);
    checkAllData(context, tree);
    Output output;
    if (options.json) {
        output.print("{}\n", reportJson(options, context));
    } else {
        printText(output, context);
    }
    output.finish();
    return findings.all().empty() ? ExitDone : ExitFindings;
}

} // namespace

void addCheckCommand(CLI::App& app, Action& action)
{
    const auto options = std::make_shared<CheckOptions>();
    CLI::App* command = app.add_subcommand("check", "Find every fault of a database in one run");
    command->add_option("DIR", options->directory, "Directory of the database")
        ->required()
        ->check(notEmpty());
    command->add_flag("--json", options->json, "As JSON");
    command->callback([&action, options] { action = [options] { return runCheck(*options); }; });
}

} // namespace tool
