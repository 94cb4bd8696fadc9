// Whole databases: opened, asked for everything, added to and opened again.
//
// An input is one line that says what is added, then files: "== ", a path, and the bytes up to the next.

#include "fuzz.h"
#include "reference.h"

#include "api/additions.h"
#include "support/OpenDatabase.h"
#include "support/TempDatabase.h"

#include <algorithm>
#include <filesystem>
#include <sstream>
#include <vector>

namespace {

using fuzz::require;
namespace fs = std::filesystem;

constexpr std::size_t mostFiles = 40;

struct Image {
    unsigned options = 0;
    std::wstring name; ///< of what is added
    test::Tree files;
};

/// A path that stays below the root and that the system can make.
bool isUsable(const std::string& path)
{
    return !path.empty() && path.front() != '/' && path.find("..") == path.npos
        && path.find('\0') == path.npos;
}

Image unpack(const std::string& bytes)
{
    std::istringstream in(bytes);
    std::string line;
    std::getline(in, line);
    Image image { static_cast<unsigned char>(line[0]), fuzz::wideOf(line).substr(0, 20), {} };
    std::erase(image.name, L'\r'); // one at the end would not survive
    while (std::getline(in, line)) {
        if (line.starts_with("== ") && image.files.size() < mostFiles) {
            image.files.push_back({ line.substr(3), "" });
        } else if (!image.files.empty()) {
            image.files.back().bytes += line + (in.eof() ? "" : "\n");
        }
    }
    std::erase_if(image.files, [](const test::Entry& file) { return !isUsable(file.path); });
    return image;
}

/// False when files stand where others want directories.
bool make(const test::TempDatabase& tree, const test::Tree& files)
try {
    std::ranges::for_each(files, [&](const test::Entry& file) { tree.make(file); });
    return true;
} catch (const fs::filesystem_error&) {
    return false;
}

/// True when some name leads the library to another directory, which has an owner of its own: a name that the
/// locale cannot convert counts as empty, and a backslash separates.
bool leadsAstray(const test::Tree& files)
{
    return std::ranges::any_of(files, [](const test::Entry& file) {
        return file.path.find('\\') != std::string::npos || reference::fromLocale(file.path).empty();
    });
}

/// True when some head names a data file that additions may make or write over.
bool mayBeOverwritten(const test::Tree& files)
{
    return std::ranges::any_of(files, [](const test::Entry& file) {
        const std::size_t data = file.path.ends_with(".prh") ? file.bytes.find("Data") : std::string::npos;
        return data != std::string::npos && file.bytes.find_first_of("/P", data) != std::string::npos;
    });
}

/// True when IDs may not fit the results of the functions that add.
bool hasLongNumber(const test::Tree& files)
{
    return std::ranges::any_of(files, [](const test::Entry& file) {
        constexpr int digits = 9;
        const auto isDigit = [](char c, bool) { return c >= '0' && c <= '9'; };
        const auto end = file.bytes.end();
        return std::search_n(file.bytes.begin(), end, digits, true, isDigit) != end;
    });
}

template <class Table>
void setRows(Table& table)
{
    using Row = std::remove_pointer_t<decltype(table.rows)>;
    table.count = 2;
    if constexpr (std::is_same_v<Row, TABLEROW>) {
        table.rows = new Row[2] { { 1, 2.5 }, { 2, 3.5 } };
    } else {
        table.rows = new Row[2] { { 1, 2.5, 0, -1 }, { 2, 3.5, 0, -1 } };
    }
}

template <class Value>
std::unique_ptr<IDbData> makeValue()
{
    auto value = std::make_unique<Value>();
    if constexpr (requires { value->value; }) {
        value->value = 2.5;
    } else if constexpr (requires { value->z; }) {
        value->x = 2.5;
        value->z = -1;
    } else if constexpr (requires { value->rows; }) {
        setRows(*value);
    } else {
        value->subtables = new std::remove_pointer_t<decltype(value->subtables)>[1];
        value->count = 1;
        value->subtables[0].firstArg = 7;
        setRows(value->subtables[0]);
    }
    return value;
}

struct Sample {
    std::unique_ptr<IDbData> (*make)();
    const char* text;
};

/// By half the type and by the vector flag.
constexpr Sample samples[3][2] = {
    { { makeValue<IDbDataConst>, "2.5" }, { makeValue<IDbDataConstVector>, "2.5 0 -1" } },
    { { makeValue<IDbDataTable>, "(1 2.5)(2 3.5)" },
        { makeValue<IDbDataTableVector>, "(1 2.5 0 -1)(2 3.5 0 -1)" } },
    { { makeValue<IDbDataTable2D>, "P=7(1 2.5)(2 3.5)" },
        { makeValue<IDbDataTable2DVector>, "P=7(1 2.5 0 -1)(2 3.5 0 -1)" } },
};

void requireDocumented(int code)
{
    constexpr int unused = -8;
    require(code <= QMDB_OK && code >= QMDB_E_FRACTIONS && code != unused, "a code is a documented one");
}

/// Adds one of each kind to a database.
class Additions {
public:
    Additions(long database, const Image& image)
        : database_(database)
        , image_(image)
        , exact_(!hasLongNumber(image.files))
        , mayFail_(leadsAstray(image.files) || !reference::toUtf8(image.name))
    {
        test::Matters matters;
        qmdbGetMatters(database_, &matters.records, &matters.count);
        const int added = note(test::addMatter(database_, newMatter()));
        if (added >= 0) {
            addBelow(added);
        }
        if (matters.begin() != matters.end()) {
            addBelow(matters.records[image_.options % static_cast<unsigned>(matters.count)].id);
        }
    }

    /// How many were added; meaningless unless isExact().
    std::size_t count() const { return count_; }
    bool isExact() const { return exact_; }

private:
    test::NewMatter newMatter() const
    {
        test::NewMatter matter { image_.name, image_.name };
        if (image_.options % 2 != 0) {
            matter.mixture = 1;
            matter.parts = { { 4, 0.25 }, { 7, image_.options % 32 < 24 ? 0.75 : 0.5 } };
        }
        return matter;
    }

    int note(int code)
    {
        if (exact_ && code < 0) {
            requireDocumented(code);
            require(code != QMDB_E_FILE || mayFail_, "nothing hinders an addition");
        }
        count_ += code >= 0 ? 1 : 0;
        return code;
    }

    void addBelow(long matter)
    {
        const auto aggreg = static_cast<MATTER_STATE>(image_.options % 6);
        const int added = note(test::addPhase(database_, matter, image_.name, aggreg));
        test::Phases phases;
        qmdbGetPhases(database_, matter, &phases.records, &phases.count);
        for (const PHASE& phase : phases) {
            require(phase.id != added || phase.aggreg == aggreg, "an added phase is listed as it is");
        }
        addPhaseChange(matter);
        if (added >= 0) { // an older one may share its directory with a phase change
            addParams(matter, added);
        }
    }

    void addPhaseChange(long matter)
    {
        const int added = note(test::addPhaseChange(database_, matter, image_.name, 1, 2));
        test::PhaseChanges changes;
        qmdbGetPhaseChanges(database_, matter, &changes.records, &changes.count);
        for (const PHASECHANGE& change : changes) {
            require(change.id != added || (change.phase1 == 1 && change.phase2 == 2),
                "an added phase change is listed as it is");
        }
    }

    void addParams(long matter, long phase)
    {
        test::Descriptions found;
        requireDocumented(
            qmdbGetAvailablePhaseParams(database_, matter, phase, &found.records, &found.count));
        for (const PARAMETERDESCR& description : found) {
            if (description.id >= 0) { // others are written as their complement
                addParam({ matter }, description);
                addParam({ matter, phase }, description);
                return;
            }
        }
        require(note(test::addParam(database_, { matter, phase }, { -7 }, nullptr)) < 0, "no such parameter");
    }

    void addParam(const test::Owner& owner, const PARAMETERDESCR& description)
    {
        const std::wstring_view letters(description.dataTypes);
        const wchar_t letter = letters.empty() ? L'C' : letters[image_.options % letters.size()];
        const std::size_t type = std::min(std::wstring_view(L"CtpTX").find(letter), std::size_t { 4 }) + 1;
        const Sample& sample = samples[type / 2][description.vector ? 1 : 0];
        const test::NewParam param { description.id, static_cast<int>(type), description.vector };
        if (note(test::addParam(database_, owner, param, sample.make().get())) == QMDB_OK) {
            require(test::valueText(database_, owner, param.id) == sample.text, "an added value reads back");
        }
    }

    long database_;
    const Image& image_;
    bool exact_;
    bool mayFail_; ///< as the name has no UTF-8 form, or a directory is not where it seems to be
    std::size_t count_ = 0;
};

/// What must not be there is refused, and leaves no list or value.
void askForUnknown(long database)
{
    IDbData* value = nullptr;
    PARAMETER* params = nullptr;
    int count = 1;
    requireDocumented(qmdbGetParamValue(database, -77, -1, -1, 1, &value));
    require(qmdbGetParamValue(database, 1, 1, 1, 1, &value) == QMDB_E_NOT_FOUND, "two owners are none");
    requireDocumented(qmdbGetPhaseChangeParams(database, -77, 1, &params, &count));
    require(!value && !params && count == 0, "a refusal hands nothing out");
}

/// Substances without phases are skipped when a database is opened.
bool allHavePhases(long database)
{
    test::Matters matters;
    const int code = qmdbGetMatters(database, &matters.records, &matters.count);
    return (code == QMDB_OK || code == QMDB_E_EMPTY)
        && std::ranges::all_of(matters, [&](const MATTER& matter) {
               test::Phases phases;
               return qmdbGetPhases(database, matter.id, &phases.records, &phases.count) == QMDB_OK;
           });
}

std::vector<std::string> linesOf(const std::string& listing, bool withValues)
{
    std::istringstream in(listing);
    std::vector<std::string> lines;
    for (std::string line; std::getline(in, line);) {
        lines.push_back(withValues ? line : line.substr(0, line.find("' = ")));
    }
    return lines;
}

/// True when `listing` holds all lines of another in their order, and so many more.
bool extends(const std::vector<std::string>& listing, const std::vector<std::string>& other, std::size_t more)
{
    auto at = other.begin();
    for (const std::string& line : listing) {
        at += at != other.end() && line == *at ? 1 : 0;
    }
    return at == other.end() && listing.size() == other.size() + more;
}

/// Adds to the database; returns what it lists then, and nothing when that is not all to be seen again.
std::string grow(const test::TempDatabase& tree, const Image& image, const test::OpenOptions& options)
{
    const test::OpenDatabase db(tree, options);
    requireDocumented(db.code);
    if (db.code != QMDB_OK) {
        require(db.id == -1, "a database that cannot be opened has no ID");
        return {};
    }
    const std::string before = test::listing(db.id);
    askForUnknown(db.id);
    const Additions additions(db.id, image);
    std::string after = test::listing(db.id);
    if (!allHavePhases(db.id) || leadsAstray(image.files)) {
        return {};
    }
    const bool withValues = !mayBeOverwritten(image.files);
    require(!additions.isExact()
            || extends(linesOf(after, withValues), linesOf(before, withValues), additions.count()),
        "all stays as it was, but for what was added");
    return after;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    [[maybe_unused]] static const bool inMemory
        = fs::is_directory("/dev/shm") && ::setenv("TMPDIR", "/dev/shm", 1) == 0;
    const Image image = unpack(fuzz::inflate(fuzz::Input(data, size).rest(), fuzz::mostOfFile));
    fuzz::setLocale(image.options % 8 < 4);
    const test::TempDatabase tree({});
    if (!make(tree, image.files)) {
        return 0;
    }
    const test::OpenOptions options { image.options % 16 < 8 ? L"en" : L"ru", {}, image.options % 3 == 0 };
    const std::string after = grow(tree, image, options);
    if (!after.empty()) {
        const test::OpenDatabase reopened(tree, options);
        require(reopened.code == QMDB_OK, "a database can be opened again");
        require(test::listing(reopened.id) == after, "a database opened again lists the same");
    }
    return 0;
}
