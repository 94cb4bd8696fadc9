#include "commands/commands.h"

#include "annotations/Annotations.h"
#include "commands/misreadings.h"
#include "commands/owners.h"
#include "common/encodings.h"
#include "output/Output.h"
#include "output/Progress.h"
#include "page/PageData.h"
#include "page/shell.h"

#include <algorithm>
#include <filesystem>

namespace tool {

namespace {

struct PageOptions {
    Location location;
    std::optional<std::size_t> rows;
    std::string file; ///< empty for standard output
};

constexpr std::size_t largestPage = 20'000'000; ///< what a mail or a phone still takes

/// The same database in a language; what the log complains of is told once.
Location inLanguage(Location location, const char* language, bool quiet)
{
    location.language = language;
    location.quiet = quiet;
    location.logDirectory = quiet ? std::string() : location.logDirectory;
    return location;
}

/// Things of a database with their texts from its two openings, which list the same in the same order.
template <class Thing, class TextsOf>
std::vector<Translated<Thing>> paired(
    const std::vector<Thing>& english, const std::vector<Thing>& russian, TextsOf textsOf)
{
    std::vector<Translated<Thing>> all;
    for (std::size_t i = 0; i < english.size(); ++i) {
        const bool same = i < russian.size() && russian[i].id == english[i].id;
        const auto [name, more] = textsOf(english[i]);
        const auto [otherName, otherMore] = textsOf(same ? russian[i] : english[i]);
        all.push_back({ english[i], { name, otherName }, { more, otherMore } });
    }
    return all;
}

/// A message as readers elsewhere may see it: paths begin in the database's directory.
std::string withoutDirectory(std::string message, const std::string& directory)
{
    const std::string prefix = directory + (directory.ends_with('/') ? "" : "/");
    for (std::size_t at = 0; (at = message.find(prefix, at)) != std::string::npos;) {
        message.erase(at, prefix.size());
    }
    return message;
}

using NameAndMore = std::pair<std::string, std::string>;

/// Collects a database for a page, substance by substance.
class Collection {
public:
    explicit Collection(const Location& location)
        : english_(inLanguage(location, "en", false))
        , russian_(inLanguage(location, "ru", true))
        , annotations_(location.directory)
    {
    }

    /// False when some value cannot be read.
    bool run()
    {
        const auto substances = paired(english_.substances(), russian_.substances(),
            [](const Substance& substance) { return NameAndMore(substance.name, substance.comment); });
        Progress progress(substances.size());
        for (const auto& substance : substances) {
            addSubstance(substance);
            progress.step();
        }
        return whole_;
    }

    PageData& data() noexcept { return data_; }

private:
    void addSubstance(const Translated<Substance>& substance)
    {
        const long id = substance.thing.id;
        data_.beginSubstance(substance, annotations_.substance(id));
        for (const auto& owner : paired(english_.owners(id), russian_.owners(id),
                 [](const Owner& of) { return NameAndMore(of.name, {}); })) {
            data_.beginOwner(owner);
            addValues(substance.thing, owner.thing);
        }
    }

    void addValues(const Substance& substance, const Owner& owner)
    {
        for (const auto& parameter :
            paired(english_.parameters(substance.id, owner), russian_.parameters(substance.id, owner),
                [](const Parameter& of) { return NameAndMore(of.name, of.units); })) {
            addValue(substance, owner, parameter);
        }
    }

    void addValue(const Substance& substance, const Owner& owner, const Translated<Parameter>& parameter)
    {
        try {
            const Table table = english_.value(substance.id, owner, parameter.thing.id);
            const ParameterNotes notes = annotations_.parameter(substance.id, owner, parameter.thing);
            warnOfMisreadings(annotations_, notes.dataFile, substance, owner, parameter.thing);
            data_.addValue(parameter, notes, table);
        } catch (const UnreadableValue& failure) {
            fmt::print(stderr, "qmdb: warning: {} of {} is left out: {}\n", parameter.thing.name,
                ownerText(substance, owner), failure.what());
            data_.addUnreadable(parameter, annotations_.description(parameter.thing.id).symbol,
                withoutDirectory(failure.what(), annotations_.directory()));
            whole_ = false;
        }
    }

    Database english_;
    Database russian_;
    Annotations annotations_;
    PageData data_;
    bool whole_ = true;
};

/// The last part of the directory's path.
std::string nameOf(const std::string& directory)
{
    const std::filesystem::path path = std::filesystem::absolute(toLocale(directory)).lexically_normal();
    const std::filesystem::path name = path.has_filename() ? path.filename() : path.parent_path().filename();
    return fromLocale(name.c_str());
}

void tellWhatIsLeftOut(const LeftOut& leftOut, bool asked)
{
    if (leftOut.tables == 0) {
        return;
    }
    const std::string reason
        = fmt::format(" to keep the page below {} MB; --rows N sets another limit", largestPage / 1'000'000);
    fmt::print(stderr, "qmdb: tables of more than {} rows are left out{}: {}, with {} rows together\n",
        leftOut.limit, asked ? "" : reason, leftOut.tables, leftOut.rows);
}

std::string dataOf(Collection& collection, const PageOptions& options)
{
    PageData& data = collection.data();
    const std::string name = nameOf(options.location.directory);
    const std::string language = options.location.language.starts_with("ru") ? "ru" : "en";
    if (options.rows) {
        tellWhatIsLeftOut(data.limitRows(*options.rows), true);
        return data.text(name, language);
    }
    std::string text = data.text(name, language);
    if (text.size() + pageShell.size() <= largestPage) {
        return text;
    }
    const std::size_t tooMuch = text.size() + pageShell.size() - largestPage;
    tellWhatIsLeftOut(data.freeSize(tooMuch), false);
    return data.text(name, language);
}

void warnOfSize(std::size_t size)
{
    if (size > largestPage) {
        fmt::print(stderr, "qmdb: warning: the page takes {} MB; a smaller --rows N leaves out more tables\n",
            (size + 500'000) / 1'000'000);
    }
}

int runPage(const PageOptions& options)
{
    Output output(options.file);
    Collection collection(options.location);
    const bool whole = collection.run();
    const std::string data = dataOf(collection, options);
    const std::size_t place = pageShell.find(dataPlace);
    output.write(pageShell.substr(0, place));
    output.write(data);
    output.write(pageShell.substr(place + dataPlace.size()));
    output.finish();
    warnOfSize(pageShell.size() + data.size());
    return whole ? ExitDone : ExitFindings;
}

} // namespace

void addPageCommand(CLI::App& app, Action& action)
{
    const auto options = std::make_shared<PageOptions>();
    CLI::App* command = addCommand(app, action, "page",
        "Make a web page of the whole database: one file that needs no network", options, runPage);
    command->get_option("--lang")->description(
        "Language that the page begins with; it switches between English and Russian");
    command
        ->add_option("--rows", options->rows,
            "Leave out tables with more rows; without it the longest are left out of a page above 20 MB")
        ->type_name("N")
        ->check(CLI::Range(0L, 2147483646L).description(""));
    command->add_option("-o,--output", options->file, "Write to this file, not to standard output")
        ->type_name("FILE")
        ->check(notEmpty());
    command->footer("Example:\n  qmdb page materials -o materials.html");
}

} // namespace tool
