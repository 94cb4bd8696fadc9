// Opening and closing: the registry, the log of a whole open, refusals, skipping, logs and tables.

#include "support/OpenDatabase.h"
#include "support/trees.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <sys/resource.h>

namespace {

using namespace test;

TEST(Registry, idsGrowByOneAndAreNeverReused)
{
    const TempDatabase tree(water);
    const TempDatabase broken(water + Tree { { "W/w.mtd", "" } });
    long first = 0;
    ASSERT_EQ(qmdbOpen(tree.path().c_str(), L"", L"", false, &first), QMDB_OK);
    const OpenDatabase second(tree);
    EXPECT_EQ(second.id, first + 1);
    const OpenDatabase refused(broken);
    EXPECT_EQ(refused.code, QMDB_E_REQUIRED_KEY);
    EXPECT_EQ(refused.id, -1);
    EXPECT_EQ(qmdbClose(first), QMDB_OK);
    EXPECT_EQ(qmdbClose(first), QMDB_E_NOT_FOUND);
    const OpenDatabase third(tree);
    EXPECT_EQ(third.id, first + 2);
    EXPECT_EQ(listing(second.id), waterListing);
}

TEST(OpenLog, wholeDatabase)
{
    const TempDatabase tree(water + Tree { { "qmdb.log", "of an earlier open\n" } });
    const OpenDatabase db(tree, { .logInfo = true });
    EXPECT_EQ(db.code, QMDB_OK);
    EXPECT_EQ(tree.log(),
        "Database path: $\n"
        "Start to search for materials\n"
        "Process subdirectory one level: $\n"
        "Start to search for phases\n"
        "Process subdirectory one level: $/W\n"
        "No files\n"
        "Start to search for phase parameters\n"
        "Process subdirectory: $/W/L\n"
        "Phase parameter head has been added to database: 7\n"
        "Phase parameters have been added, 1\n"
        "Phase has been added to database,ID=2\n"
        "Phases have been added1\n"
        "Start to search for phase changes\n"
        "Process subdirectory one level: $/W\n"
        "No files\n"
        "Start to search for phase change parameters\n"
        "Process subdirectory: $/W/M\n"
        "Phase change parameter head has been added to database: 8\n"
        "Phase change parameters have been added, 1\n"
        "Phase change has been added to database, ID=3\n"
        "Phase changes have been added1\n"
        "Start to search for material parameters\n"
        "Process subdirectory: $/W\n"
        "Material parameter head has been added to database: 9\n"
        "Material parameters have been added1\n"
        "Material has been added to database, ID=4\n"
        "Materials have been added to database1\n"
        "Start to search for parameter descriptions\n"
        "Process subdirectory: $\n"
        "Parameter description has been added to database, ID=7\n"
        "Parameter descriptions have been added to database, 1\n");
}

constexpr const char* emptyDatabaseLog = "Database path: $\n"
                                         "ERROR: Cannot open file: $/default.lst\n"
                                         "Start to search for materials\n"
                                         "Process subdirectory one level: $\n"
                                         "Materials have been added to database0\n"
                                         "Start to search for parameter descriptions\n"
                                         "Process subdirectory: $\n"
                                         "Parameter descriptions have been added to database, 0\n";

TEST(OpenLog, emptyDatabase)
{
    const TempDatabase tree({});
    const OpenDatabase db(tree, { .logInfo = true });
    EXPECT_EQ(db.code, QMDB_OK);
    EXPECT_EQ(tree.log(), emptyDatabaseLog);
    EXPECT_EQ(listing(db.id), "");
}

TEST(OpenLog, negativeIdsAreWrittenUnsigned)
{
    const TempDatabase tree({ { "default.lst", "" }, { "I/i.mtd", "ID=-1\nName=\nMixture=\nComposition=\n" },
        { "I/P/p.phd", "ID=-2\nName=\nAggreg=\n" } });
    const OpenDatabase db(tree, { .logInfo = true });
    EXPECT_NE(
        tree.log().find("Phase has been added to database,ID=18446744073709551614\n"), std::string::npos);
    EXPECT_NE(
        tree.log().find("Material has been added to database, ID=18446744073709551615\n"), std::string::npos);
    EXPECT_EQ(listing(db.id), "matter -1 '' '' mixture 0\n  phase -2 '' state 0\n");
}

TEST(OpenLog, directory)
{
    const TempDatabase tree(water);
    const TempDatabase logs({ { "qmdb.log", "old\n" }, { "sub/", "" } });
    {
        const OpenDatabase silent(tree);
        EXPECT_FALSE(tree.exists("qmdb.log")) << "a clean open without information writes nothing";
        const OpenDatabase clean(tree, { .logDir = logs.path() });
        EXPECT_FALSE(logs.exists("qmdb.log")) << "the old log goes all the same";
    }
    const OpenDatabase other(tree, { .logDir = logs.path() + L"/sub", .logInfo = true });
    EXPECT_TRUE(logs.read("sub/qmdb.log").starts_with("Database path: " + tree.root() + "\n"));
    EXPECT_FALSE(tree.exists("qmdb.log"));
    const OpenDatabase sharing(tree, { .logDir = logs.path() + L"/sub" });
    EXPECT_FALSE(logs.exists("sub/qmdb.log")) << "the second open deletes the first one's log";
    const OpenDatabase missing(tree, { .logDir = logs.path() + L"/none", .logInfo = true });
    EXPECT_EQ(missing.code, QMDB_OK);
    EXPECT_FALSE(logs.exists("none"));
    logs.make({ "sub/qmdb.log/entry", "" });
    const OpenDatabase blocked(tree, { .logDir = logs.path() + L"/sub", .logInfo = true });
    EXPECT_EQ(blocked.code, QMDB_OK) << "what cannot be deleted or written is ignored";
}

struct RefusedCase {
    const char* name;
    Tree more;
    int code;
    const char* log;
};

const RefusedCase refusedCases[] = {
    { "twoSubstanceFiles", { { "W/v.mtd", "" } }, QMDB_E_FILE, "ERROR: More than one files: W\n" },
    { "twoPhaseFiles", { { "W/L/k.phd", "" } }, QMDB_E_FILE,
        "ERROR: More than one files: L\nERROR: Cannot load matter file: $/W/w.mtd\n" },
    { "twoPhaseChangeFiles", { { "W/M/k.pcd", "" } }, QMDB_E_FILE,
        "ERROR: More than one files: M\nERROR: Cannot load matter file: $/W/w.mtd\n" },
    { "danglingLink", { { "W/w.mtd", "nowhere", Kind::link } }, QMDB_E_FILE,
        "ERROR: Cannot open file: $/W/w.mtd\nERROR: Cannot load matter file: $/W/w.mtd\n" },
    { "unreadable", { { "7.prd", "/proc/self/mem", Kind::link } }, QMDB_E_READ,
        "ERROR: Cannot read from  file: $/7.prd\nERROR: Cannot load parameter description file: $/7.prd\n" },
    { "unreadableHeadOfPhase", { { "W/L/d.prh", "/proc/self/mem", Kind::link } }, QMDB_E_READ,
        "ERROR: Cannot read from  file: $/W/L/d.prh\nERROR: Cannot load parameter head file: $/W/L/d.prh\n"
        "ERROR: Cannot load phase file: $/W/L/l.phd\nERROR: Cannot load matter file: $/W/w.mtd\n" },
    { "unreadablePhaseChange", { { "W/M/m.pcd", "/proc/self/mem", Kind::link } }, QMDB_E_READ,
        "ERROR: Cannot read from  file: $/W/M/m.pcd\nERROR: Cannot load phase change file: $/W/M/m.pcd\n"
        "ERROR: Cannot load matter file: $/W/w.mtd\n" },
    { "fifoHoldsNothing", { { "W/L/l.phd", "", Kind::fifo } }, QMDB_E_REQUIRED_KEY,
        "ERROR: No required field(s) in file: $/W/L/l.phd\nERROR: Cannot load phase file: $/W/L/l.phd\n"
        "ERROR: Cannot load matter file: $/W/w.mtd\n" },
};

TEST(Open, refusesBrokenDatabases)
{
    for (const RefusedCase& row : refusedCases) {
        SCOPED_TRACE(row.name);
        const TempDatabase tree(water + row.more);
        const OpenDatabase db(tree);
        EXPECT_EQ(db.code, row.code);
        EXPECT_EQ(db.id, -1);
        EXPECT_EQ(tree.log(), row.log);
    }
}

struct RequiredCase {
    const char* file;
    std::vector<std::string> keys;
    const char* owners; // what is logged after the line for the file itself
};

const RequiredCase requiredCases[] = {
    { "W/w.mtd", { "ID", "Name", "Mixture", "Composition" }, "ERROR: Cannot load matter file: $/W/w.mtd\n" },
    { "W/L/l.phd", { "ID", "Name", "Aggreg" },
        "ERROR: Cannot load phase file: $/W/L/l.phd\nERROR: Cannot load matter file: $/W/w.mtd\n" },
    { "W/M/m.pcd", { "ID", "Name", "Phase1", "Phase2" },
        "ERROR: Cannot load phase change file: $/W/M/m.pcd\nERROR: Cannot load matter file: $/W/w.mtd\n" },
    { "7.prd", { "ID", "Name", "Units", "Binary" },
        "ERROR: Cannot load parameter description file: $/7.prd\n" },
    { "W/own.prh", { "ID", "Vector", "Type", "Data" },
        "ERROR: Cannot load parameter head file: $/W/own.prh\nERROR: Cannot load matter file: $/W/w.mtd\n" },
    { "W/M/h.prh", { "ID", "Vector", "Type", "Data" },
        "ERROR: Cannot load parameter head file: $/W/M/h.prh\n"
        "ERROR: Cannot load phase change file: $/W/M/m.pcd\nERROR: Cannot load matter file: $/W/w.mtd\n" },
};

// All keys of a kind with empty values, but for one key that is left out.
std::string withoutKey(const RequiredCase& kind, std::string_view missing)
{
    std::string bytes;
    for (const std::string& key : kind.keys) {
        bytes += key == missing ? "" : key + "=\n";
    }
    return bytes;
}

TEST(Open, requiresKeysButNoValues)
{
    for (const RequiredCase& kind : requiredCases) {
        for (const std::string& missing : kind.keys) {
            SCOPED_TRACE(std::string(kind.file) + " without " + missing);
            const TempDatabase tree(water + Tree { { kind.file, withoutKey(kind, missing) } });
            EXPECT_EQ(OpenDatabase(tree).code, QMDB_E_REQUIRED_KEY);
            EXPECT_EQ(tree.log(),
                std::string("ERROR: No required field(s) in file: $/") + kind.file + "\n" + kind.owners);
        }
        SCOPED_TRACE(std::string(kind.file) + " with empty values");
        const TempDatabase tree(water + Tree { { kind.file, withoutKey(kind, "none") } });
        EXPECT_EQ(OpenDatabase(tree).code, QMDB_OK);
    }
}

TEST(Open, skipsASubstanceWithoutPhases)
{
    const TempDatabase tree(water + Tree { { "E/e.mtd", "ID=9\nName=Empty\nMixture=0\nComposition=\n" } });
    const OpenDatabase db(tree);
    EXPECT_EQ(db.code, QMDB_OK);
    EXPECT_EQ(tree.log(), "ERROR: Material without phases: $/E/e.mtd\n");
    EXPECT_EQ(listing(db.id), waterListing);
}

struct LanguageCase {
    const wchar_t* language;
    const char* name;
};

TEST(Open, languageSelectsTheStringTable)
{
    const TempDatabase tree(bareIron
        + Tree { { "default.lst", "3=iron\n" }, { "strings.lst", "3=ferrum\n" },
            { "I/i.mtd", "ID=5\nName=Iron\nNameID=3\nMixture=0\nComposition=\n" } });
    const LanguageCase cases[] = { { L"ru", "ferrum" }, { L"ru_RU", "ferrum" }, { L"rus", "ferrum" },
        { L"en", "iron" }, { L"", "iron" }, { L"xru", "iron" }, { L"RU", "iron" }, { L"r", "iron" } };
    for (const auto& [language, name] : cases) {
        const OpenDatabase db(tree, { .language = language });
        EXPECT_TRUE(listing(db.id).starts_with(std::string("matter 5 '") + name + "'")) << toUtf8(language);
    }
}

struct TableCase {
    const char* name;
    Tree table;
    const char* log;
};

TEST(Open, doesWithoutAStringTable)
{
    const TableCase cases[] = {
        { "missing", {}, "ERROR: Cannot open file: $/default.lst\n" },
        { "directory", { { "default.lst/", "" } }, "ERROR: Cannot read from  file: $/default.lst\n" },
        { "noEntries", { { "default.lst", "no sign\n" } },
            "ERROR: File format error: $/default.lst(no sign)\n" },
    };
    for (const TableCase& row : cases) {
        SCOPED_TRACE(row.name);
        const TempDatabase tree(row.table + bareIron);
        const OpenDatabase db(tree);
        EXPECT_EQ(db.code, QMDB_OK);
        EXPECT_EQ(listing(db.id), bareIronListing);
        EXPECT_EQ(tree.log(), row.log);
    }
}

// Names of the two directories under `parent` in the order in which the system lists them.
std::vector<std::string> directoryOrder(const TempDatabase& tree, const std::string& parent)
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(tree.root() + "/" + parent)) {
        if (entry.is_directory()) {
            names.push_back(entry.path().filename().string());
        }
    }
    return names;
}

TEST(Open, laterDuplicateReplacesTheEarlier)
{
    const TempDatabase tree({ { "default.lst", "" }, { "A/s.mtd", "ID=1\nName=A\nMixture=0\nComposition=\n" },
        { "B/s.mtd", "ID=1\nName=B\nMixture=0\nComposition=\n" }, { "A/C/p.phd", "ID=2\nName=C\nAggreg=1\n" },
        { "A/D/p.phd", "ID=2\nName=D\nAggreg=1\n" }, { "B/C/p.phd", "ID=2\nName=C\nAggreg=1\n" },
        { "B/D/p.phd", "ID=2\nName=D\nAggreg=1\n" } });
    const OpenDatabase db(tree, { .logInfo = true });
    const std::string winner = directoryOrder(tree, "").back();
    const std::string phase = directoryOrder(tree, winner).back();
    EXPECT_EQ(listing(db.id), "matter 1 '" + winner + "' '' mixture 0\n  phase 2 '" + phase + "' state 1\n");
    EXPECT_NE(tree.log().find("Phases have been added1\n"), std::string::npos);
    EXPECT_NE(tree.log().find("Materials have been added to database1\n"), std::string::npos);
}

// A directory that is there and cannot be listed must not pass for an empty one.
TEST(OpenFailures, unlistableDirectoriesAreReported)
{
    const TempDatabase tree(water
        + Tree {
            { "loop", "loop", Kind::link }, { "W/P/p.phd", "ID=9\nName=P\nAggreg=1\n" }, { "logs/", "" } });
    const std::wstring logs = tree.path() + L"/logs";
    const std::pair<std::wstring, int> roots[] = { { L"/loop", 2 }, { L"/" + std::wstring(300, L'n'), 2 },
        { L"/nothing", 0 }, { L"/default.lst", 0 } };
    for (const auto& [root, reports] : roots) {
        const OpenDatabase db(tree.path() + root, { .logDir = logs });
        EXPECT_EQ(db.code, QMDB_OK);
        std::string expected = "ERROR: Cannot open file: $" + toUtf8(root) + "/default.lst\n";
        for (int scan = 0; scan < reports; ++scan) {
            expected += "ERROR: Cannot list directory: $" + toUtf8(root) + "\n";
        }
        std::string log = tree.read("logs/qmdb.log");
        for (std::size_t at = 0; (at = log.find(tree.root(), at)) != log.npos;) {
            log.replace(at, tree.root().size(), "$");
        }
        EXPECT_EQ(log, expected);
    }
    rlimit before {};
    ::getrlimit(RLIMIT_NOFILE, &before);
    const rlimit none { 0, before.rlim_max };
    ::setrlimit(RLIMIT_NOFILE, &none);
    long id = 0;
    const int code = qmdbOpen(tree.path().c_str(), L"", L"", false, &id);
    ::setrlimit(RLIMIT_NOFILE, &before);
    EXPECT_EQ(code, QMDB_E_FILE) << "no descriptor is left, and IDs would start anew";
    EXPECT_EQ(id, -1);
}

TEST(OpenLog, namesOfEntriesStayOnTheirLine)
{
    const TempDatabase tree(Tree { { "default.lst", "" }, { "a\nERROR: b/x\x01y.mtd", "ID=1\n" } });
    const OpenDatabase db(tree);
    EXPECT_EQ(db.code, QMDB_E_REQUIRED_KEY);
    EXPECT_EQ(tree.log(),
        "ERROR: No required field(s) in file: $/a?ERROR: b/x?y.mtd\n"
        "ERROR: Cannot load matter file: $/a?ERROR: b/x?y.mtd\n");
}

TEST(OpenLog, isNotWrittenThroughALink)
{
    const TempDatabase tree(water + Tree { { "qmdb.log", "elsewhere", Kind::link } });
    const OpenDatabase db(tree, { .logInfo = true });
    EXPECT_EQ(db.code, QMDB_OK);
    EXPECT_FALSE(tree.exists("elsewhere"));
}

} // namespace
