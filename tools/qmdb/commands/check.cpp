#include "commands/commands.h"

#include "check/check.h"
#include "common/characters.h"
#include "output/Output.h"
#include "output/Progress.h"
#include "output/json.h"

#include <optional>

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

void printFinding(Output& output, const check::Finding& finding)
{
    const bool error = finding.severity == check::Severity::Error;
    const auto colour = error ? fmt::terminal_color::red : fmt::terminal_color::yellow;
    const std::string severity
        = output.styled(fmt::fg(colour) | fmt::emphasis::bold, error ? "error" : "warning");
    const std::string file = finding.place.file.empty() ? "." : finding.place.file;
    const std::string line = finding.place.hasLine() ? fmt::format(":{}", finding.place.line) : "";
    output.print("{}{}: {}: {}; {} [{}]\n", printable(file), line, severity, printable(finding.what),
        printable(finding.advice), finding.kind);
}

void printText(Output& output, const check::Findings& findings, std::size_t files)
{
    for (const check::Finding& finding : findings.all()) {
        printFinding(output, finding);
    }
    output.print("{}, {} in {}\n", counted(findings.count(check::Severity::Error), "error"),
        counted(findings.count(check::Severity::Warning), "warning"), counted(files, "file"));
}

Json toJson(const check::Finding& finding)
{
    const check::Place& place = finding.place;
    return { { "file", place.file }, { "line", place.hasLine() ? Json(place.line) : Json() },
        { "severity", finding.severity == check::Severity::Error ? "error" : "warning" },
        { "kind", finding.kind }, { "what", finding.what }, { "do", finding.advice } };
}

std::string reportJson(const std::string& directory, const check::Findings& findings, std::size_t files)
{
    Json json { { "directory", directory }, { "files", files },
        { "errors", findings.count(check::Severity::Error) },
        { "warnings", findings.count(check::Severity::Warning) }, { "findings", Json::array() } };
    for (const check::Finding& finding : findings.all()) {
        json["findings"].push_back(toJson(finding));
    }
    return dump(json, 2);
}

int runCheck(const CheckOptions& options)
{
    requireDatabase(options.directory);
    check::Findings findings;
    std::optional<Progress> progress;
    const std::size_t files = check::checkDatabase(options.directory, findings,
        [&](std::size_t substances) { progress ? progress->step() : progress.emplace(substances).step(); });
    progress.reset();
    Output output;
    if (options.json) {
        output.print("{}\n", reportJson(options.directory, findings, files));
    } else {
        printText(output, findings, files);
    }
    output.finish();
    return findings.isEmpty() ? ExitDone : ExitFindings;
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
