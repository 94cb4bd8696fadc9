// Additions of substances, phases and phase changes: checks, files, names, IDs.

#include "api/additions.h"
#include "support/ScopedLocale.h"
#include "support/trees.h"

#include <gtest/gtest.h>

#include <cmath>
#include <sys/stat.h>

namespace {

using namespace test;

TEST(AddEntities, intoAnEmptyDatabase)
{
    const TempDatabase tree(Tree { { "default.lst", "" } });
    const std::string listed = "matter 0 'St\xC3\xA4hle' 'Made' mixture 0\n"
                               "  phase 0 'Solid' state 1\n  change 0 'Melting' 7 to 7\n";
    {
        const OpenDatabase db(tree, { .logInfo = true });
        tree.clearLog();
        EXPECT_EQ(addMatter(db.id, { L"St\u00E4hle", L"Made" }), 0);
        EXPECT_EQ(valueText(db.id, { 0, 0 }, 1), "error -9") << "no phases yet";
        EXPECT_EQ(addPhase(db.id, 0, L"Solid", 1), 0);
        EXPECT_EQ(addPhaseChange(db.id, 0, L"Melting", 7, 7), 0);
        EXPECT_EQ(listing(db.id), listed);
    }
    EXPECT_EQ(tree.log(),
        "New material saved: $/Substance1/Substance1.mtd, ID=0\n"
        "New phase saved: $/Substance1/Phase1/Phase1.phd, ID=0\n"
        "New phase change saved: $/Substance1/PC1/PC1.pcd, ID=0\n");
    EXPECT_EQ(tree.changes(),
        "== Substance1/PC1/PC1.pcd\n<mark>ID=0\nName=Melting\nNameID=3\nPhase1=7\nPhase2=7\n"
        "== Substance1/Phase1/Phase1.phd\n<mark>Aggreg=1\nID=0\nName=Solid\nNameID=2\n"
        "== Substance1/Substance1.mtd\n<mark>Comment=Made\nCommentID=1\nComposition=\nID=0\nMixture=0\n"
        "Name=St\xC3\xA4hle\nNameID=0\n");
    EXPECT_EQ(listing(OpenDatabase(tree).id), listed);
}

TEST(AddEntities, toLoadedOnes)
{
    const TempDatabase tree(water);
    const OpenDatabase db(tree);
    EXPECT_EQ(addPhase(db.id, 4, L"Odd", -1), 3);
    EXPECT_EQ(addPhaseChange(db.id, 4, L"Odd", -1, 9), 4);
    EXPECT_EQ(addMatter(db.id, { L"Odd" }), 5);
    EXPECT_EQ(addMatter(db.id, { L"water" }), 6) << "letter case makes another name";
    EXPECT_EQ(listing(db.id),
        "matter 4 'Water' '' mixture 0\n"
        "  param 9 type 1 scalar '' '' = 1.5\n"
        "  phase 2 'Liquid' state 2\n"
        "    param 7 type 2 scalar 'Density' 'kg/m3' = (300 996.5)\n"
        "  phase 3 'Odd' state -1\n"
        "  change 3 'Melting' 1 to 2\n"
        "    param 8 type 1 vector '' '' = 1 2 3\n"
        "  change 4 'Odd' 9223372036854775807 to 9\n"
        "matter 5 'Odd' '' mixture 0\n"
        "matter 6 'water' '' mixture 0\n");
    EXPECT_EQ(tree.changes(),
        "== Substance1/Substance1.mtd\n<mark>Comment=\nCommentID=4\nComposition=\nID=5\nMixture=0\nName=Odd\n"
        "NameID=3\n"
        "== "
        "Substance2/Substance2.mtd\n<mark>Comment=\nCommentID=6\nComposition=\nID=6\nMixture=0\nName=water\n"
        "NameID=5\n"
        "== W/PC1/PC1.pcd\n<mark>ID=4\nName=Odd\nNameID=2\nPhase1=18446744073709551615\nPhase2=9\n"
        "== W/Phase1/Phase1.phd\n<mark>Aggreg=18446744073709551615\nID=3\nName=Odd\nNameID=1\n");
    EXPECT_EQ(tree.log(), "");
}

TEST(AddEntities, refusals)
{
    const TempDatabase tree(water
        + Tree { { "default.lst", "1=Ice\n2=Freezing\n3=Eau\n4=" },
            { "W/w.mtd", "ID=4\nName=Water\nNameID=3\nMixture=0\nComposition=\n" },
            { "W/I/i.phd", "ID=5\nName=Solid\nNameID=1\nAggreg=1\n" },
            { "W/F/f.pcd", "ID=5\nName=Other\nNameID=2\nPhase1=\nPhase2=\n" } });
    const OpenDatabase db(tree);
    EXPECT_EQ(addMatter(db.id, { L"Eau", L"", 1 }), QMDB_E_DUPLICATE_NAME) << "before the fractions";
    EXPECT_EQ(addPhase(db.id, 99, L"Ice", 1), QMDB_E_NOT_FOUND);
    EXPECT_EQ(addPhase(db.id, 4, L"Ice", 1), QMDB_E_DUPLICATE_NAME);
    EXPECT_EQ(addPhaseChange(db.id, 99, L"Freezing", 1, 2), QMDB_E_NOT_FOUND);
    EXPECT_EQ(addPhaseChange(db.id, 4, L"Freezing", 1, 2), QMDB_E_DUPLICATE_NAME);
    EXPECT_EQ(tree.log(),
        "ERROR: Cannot append a substance because a duplicated name, Eau\n"
        "ERROR: Cannot append a phase because a duplicated name, Ice\n"
        "ERROR: Cannot append a phase change because a duplicated name, Freezing\n");
    EXPECT_EQ(tree.changes(), "");
    EXPECT_EQ(addMatter(db.id, { L"Water" }), 5) << "only the displayed name is taken";
    EXPECT_EQ(addPhase(db.id, 4, L"Freezing", 1), 6) << "names of phase changes are their own";
    const TempDatabase empty(Tree {});
    const OpenDatabase none(empty);
    EXPECT_EQ(addPhase(none.id, 4, L"", 1), QMDB_E_EMPTY);
    EXPECT_EQ(addPhaseChange(none.id, 4, L"", 1, 2), QMDB_E_EMPTY);
}

struct MixtureCase {
    const char* name;
    std::vector<COMPONENT> parts;
    int code;
    const char* text; // the composition written, or the sum in the log
    long mixture = 1;
};

TEST(AddEntities, mixtures)
{
    const double nan = std::nan("");
    const MixtureCase cases[] = {
        { "two", { { 4, 0.25 }, { 7, 0.75 } }, 5, "4:0.25;7:0.75" },
        { "lowerLimit", { { 4, 0.5 }, { 7, 0.49 } }, 5, "4:0.5;7:0.49" },
        { "tooLow", { { 4, 0.5 }, { 7, 0.489 } }, QMDB_E_FRACTIONS, "0.989" },
        { "tooHigh", { { 4, 0.6 }, { 7, 0.41 } }, QMDB_E_FRACTIONS, "1.01" },
        { "noToleranceAbove", { { 4, 0.4 }, { 7, 0.4 }, { 8, 0.2 }, { 9, 3e-16 } }, QMDB_E_FRACTIONS, "1" },
        { "inOrder", { { 4, 0.7 }, { 7, 0.2 }, { 8, 0.1 } }, 5, "4:0.7;7:0.2;8:0.1" },
        { "sixDigits", { { -1, 1 / 3. }, { 7, 2 / 3. } }, 5, "18446744073709551615:0.333333;7:0.666667" },
        { "single", { { 9, 1 } }, 5, "9:1" },
        { "notANumber", { { 4, nan }, { 7, 5 } }, 5, "4:nan;7:5" },
        { "none", {}, QMDB_E_FRACTIONS, "0" },
        { "negativeFlag", { { 4, 1e-7 }, { 7, 0.99 } }, 5, "4:1e-07;7:0.99", -1 },
        { "negativeFlagChecks", { { 4, 2 } }, QMDB_E_FRACTIONS, "2", -1 },
        { "pureIsNotChecked", { { 4, 2 } }, 5, "", 0 },
    };
    for (const MixtureCase& row : cases) {
        SCOPED_TRACE(row.name);
        const TempDatabase tree(water);
        const OpenDatabase db(tree);
        EXPECT_EQ(addMatter(db.id, { L"Mix", L"", row.mixture, row.parts }), row.code);
        const std::string written = std::string("== Substance1/Substance1.mtd\n<mark>Comment=\nCommentID=2\n")
            + "Composition=" + row.text + "\nID=5\nMixture="
            + std::to_string(static_cast<unsigned long>(row.mixture)) + "\nName=Mix\nNameID=1\n";
        const std::string refused
            = std::string("ERROR: Incorrect molar fractions summ at sunstance addition (") + row.text + ")\n";
        EXPECT_EQ(tree.changes(), row.code < 0 ? "== Substance1/\n" : written);
        EXPECT_EQ(tree.log(), row.code < 0 ? refused : "");
    }
}

TEST(AddEntities, countsThatTheCompositionDoesNotBack)
{
    const TempDatabase tree(water);
    const OpenDatabase db(tree);
    MATTER record {};
    record.mixture = -1;
    record.compositionCount = 3;
    EXPECT_EQ(qmdbAddMatter(db.id, &record), QMDB_E_FRACTIONS) << "a null composition has no components";
    COMPONENT part { 4, 1.0 };
    record.composition = &part;
    record.compositionCount = -1;
    EXPECT_EQ(qmdbAddMatter(db.id, &record), QMDB_E_FRACTIONS) << "a negative count has none";
    EXPECT_EQ(tree.log(),
        "ERROR: Incorrect molar fractions summ at sunstance addition (0)\n"
        "ERROR: Incorrect molar fractions summ at sunstance addition (0)\n");
}

TEST(AddEntities, singleComponentIsRefusedByTheList)
{
    const TempDatabase tree(water);
    const OpenDatabase db(tree);
    EXPECT_EQ(addMatter(db.id, { L"Mix", L"", 1, { { 9, 1 } } }), 5);
    EXPECT_EQ(listing(db.id), "error -12, count 2\n");
    EXPECT_EQ(tree.log(), "ERROR: Bad format of a composition line: 9:1\n");
}

TEST(AddEntities, refusedMixtureUsesUpItsNumbers)
{
    const TempDatabase tree(Tree { { "default.lst", "" } });
    const OpenDatabase db(tree);
    EXPECT_EQ(addMatter(db.id, { L"Mix", L"", 1 }), QMDB_E_FRACTIONS);
    EXPECT_EQ(listing(db.id), "");
    EXPECT_EQ(addMatter(db.id, { L"Mix" }), 1);
    EXPECT_EQ(tree.changes(),
        "== Substance1/\n"
        "== Substance2/Substance2.mtd\n<mark>Comment=\nCommentID=3\nComposition=\nID=1\nMixture=0\nName=Mix\n"
        "NameID=2\n");
}

struct DirectoryCase {
    const char* name;
    Tree more;
    const char* matter;
    const char* phase;
    const char* change;
};

TEST(AddEntities, firstFreeDirectoryName)
{
    const DirectoryCase cases[] = {
        { "gaps",
            { { "Substance2/", "" }, { "W/Phase1/", "" }, { "W/Phase2/", "" }, { "W/Phase4/", "" },
                { "W/PC1/", "" } },
            "Substance1", "Phase3", "PC2" },
        { "anyEntryBlocks",
            { { "Substance1", "" }, { "W/Phase1", "L", Kind::link }, { "W/PC1", "", Kind::fifo } },
            "Substance2", "Phase2", "PC2" },
        { "exactNames", { { "substance1/", "" }, { "W/Phase01/", "" }, { "W/PC1.pcd", "" } }, "Substance1",
            "Phase1", "PC1" },
    };
    for (const DirectoryCase& row : cases) {
        SCOPED_TRACE(row.name);
        const TempDatabase tree(water + row.more);
        const OpenDatabase db(tree, { .logInfo = true });
        ASSERT_EQ(db.code, QMDB_OK);
        tree.clearLog();
        EXPECT_EQ(addMatter(db.id, { L"A" }), 5);
        EXPECT_EQ(addPhase(db.id, 4, L"A", 1), 3);
        EXPECT_EQ(addPhaseChange(db.id, 4, L"A", 1, 2), 4);
        const std::string matter = row.matter;
        const std::string phase = row.phase;
        const std::string change = row.change;
        EXPECT_EQ(tree.log(),
            "New material saved: $/" + matter + "/" + matter + ".mtd, ID=5\n" //
                + "New phase saved: $/W/" + phase + "/" + phase + ".phd, ID=3\n" //
                + "New phase change saved: $/W/" + change + "/" + change + ".pcd, ID=4\n");
        EXPECT_TRUE(tree.read("W/" + change + "/" + change + ".pcd").starts_with(utf8Mark));
    }
}

struct StringIdCase {
    const char* name;
    Tree more;
    long nameId;
    int id = 6;
};

TEST(AddEntities, nextStringId)
{
    const std::string matter = "ID=5\nName=\nMixture=\nComposition=\n";
    const StringIdCase cases[] = {
        { "highestOfAll",
            { { "W/L/l.phd", "ID=1\nName=\nAggreg=\nNameID=7" }, { "I/i.mtd", matter + "NameID=3" } }, 8 },
        { "commentCounts", { { "I/i.mtd", matter + "CommentID=30" } }, 31 },
        { "phaseChangeCounts", { { "W/M/m.pcd", "ID=1\nName=\nPhase1=\nPhase2=\nNameID=12" } }, 13 },
        { "descriptionNameCounts", { { "7.prd", "ID=7\nName=\nUnits=\nBinary=\nNameID=5" } }, 6 },
        { "descriptionUnitsCount", { { "7.prd", "ID=7\nName=\nUnits=\nBinary=\nUnitsID=9x" } }, 10 },
        { "headsDoNotCount", { { "W/own.prh", "ID=9\nVector=0\nType=1\nData=own.dat\nNameID=50" } }, 1 },
        { "textsAreSkipped", { { "default.lst", "8=a\n9=b\n011=d\n" }, { "I/i.mtd", matter + "NameID=7" } },
            10 },
        { "emptyTextDoesNotBlock", { { "default.lst", "8=\n9=b\n" }, { "I/i.mtd", matter + "NameID=7" } },
            8 },
        { "unusedTextsDoNotRaise", { { "default.lst", "50=a\n" } }, 1 },
        { "rejectedSubstanceRaisesBoth",
            { { "E/e.mtd", "ID=90\nName=\nNameID=40\nMixture=\nComposition=\n" } }, 41, 91 },
        { "noNumberCountsAsZero", { { "I/i.mtd", matter + "NameID=abc\nCommentID=-3" } }, 1 },
    };
    for (const StringIdCase& row : cases) {
        SCOPED_TRACE(row.name);
        const TempDatabase tree(water + bareIron + row.more);
        const OpenDatabase db(tree);
        EXPECT_EQ(addMatter(db.id, { L"New" }), row.id);
        const std::string bytes = tree.read("Substance1/Substance1.mtd");
        EXPECT_NE(bytes.find("\nNameID=" + std::to_string(row.nameId) + "\n"), bytes.npos) << bytes;
    }
}

TEST(AddEntities, highestIds)
{
    const TempDatabase tree({ { "A/a.mtd", "ID=-7\nName=A\nMixture=\nComposition=\n" },
        { "A/P/p.phd", "ID=-2\nName=P\nAggreg=\n" } });
    const OpenDatabase db(tree);
    EXPECT_EQ(addPhase(db.id, -7, L"N", 1), 0) << "negative IDs raise nothing";
    EXPECT_EQ(addMatter(db.id, { L"N" }), 0);
    const TempDatabase large(Tree { { "A/a.mtd", "ID=4294967295\nName=A\nMixture=\nComposition=\n" },
        { "A/P/p.phd", "ID=9223372036854775807\nName=P\nAggreg=\n" } });
    const OpenDatabase narrow(large);
    EXPECT_EQ(addMatter(narrow.id, { L"N" }), 0) << "the ID's low 32 bits";
    EXPECT_NE(large.read("Substance1/Substance1.mtd").find("\nID=4294967296\n"), std::string::npos);
    EXPECT_EQ(addPhase(narrow.id, 4294967295, L"N", 1), QMDB_E_INTERNAL) << "no free ID left";
}

TEST(AddEntities, directoryThatCannotBeMade)
{
    const TempDatabase tree(water + bareIron + Tree { { "Substance1", "nowhere", Kind::link } });
    const OpenDatabase db(tree);
    EXPECT_EQ(addMatter(db.id, { L"A" }), QMDB_E_FILE) << "a dangling link does not block the name";
    tree.remove("W");
    EXPECT_EQ(addPhase(db.id, 4, L"A", 1), QMDB_E_FILE);
    tree.make({ "W", "a file now" });
    EXPECT_EQ(addPhaseChange(db.id, 4, L"A", 1, 2), QMDB_E_FILE);
    EXPECT_EQ(tree.log(),
        "ERROR: EQMException with code=80050004, subcode=0\n"
        "ERROR: EQMException with code=80050003, subcode=0\n"
        "ERROR: EQMException with code=8001000A, subcode=0\n");
    tree.remove("Substance1");
    EXPECT_EQ(addMatter(db.id, { L"A" }), 6) << "nothing after the directory had happened";
}

TEST(AddEntities, permissionsOfADirectory)
{
    const TempDatabase tree(water);
    const OpenDatabase db(tree);
    const mode_t mask = ::umask(0);
    EXPECT_EQ(addMatter(db.id, { L"A" }), 5);
    ::umask(mask);
    struct stat status { };
    ASSERT_EQ(::stat((tree.root() + "/Substance1").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0750U);
}

TEST(AddEntities, textsOfARecord)
{
    const std::wstring longest(50, L'x');
    const TempDatabase tree(water);
    {
        const OpenDatabase db(tree);
        EXPECT_EQ(addMatter(db.id, { longest, longest }), 5) << "no terminator in either field";
        EXPECT_EQ(addMatter(db.id, { longest }), QMDB_E_DUPLICATE_NAME);
        EXPECT_EQ(addPhase(db.id, 5, L"a=b\r", 1), 0);
    }
    const std::string x(50, 'x');
    EXPECT_EQ(tree.changes(),
        "== Substance1/Phase1/Phase1.phd\n<mark>Aggreg=1\nID=0\nName=a=b\r\nNameID=3\n"
        "== Substance1/Substance1.mtd\n<mark>Comment="
            + x + "\nCommentID=2\nComposition=\nID=5\nMixture=0\nName=" + x + "\nNameID=1\n");
    EXPECT_EQ(listing(OpenDatabase(tree).id),
        std::string(waterListing) + "matter 5 '" + x.substr(1) + "' '" + x.substr(1)
            + "' mixture 0\n  phase 0 'a=b' state 1\n");
}

TEST(AddEntities, textThatCannotBeEncoded)
{
    const std::wstring beyond { static_cast<wchar_t>(0x110000) };
    const std::wstring negative { static_cast<wchar_t>(-1) };
    const TempDatabase tree(
        water + Tree { { "W/O/o.phd", std::string(utf8Mark) + "ID=5\nName=\xF4\x90\x80\x80\nAggreg=\n" } });
    const OpenDatabase db(tree);
    EXPECT_EQ(addPhase(db.id, 4, beyond, 1), QMDB_E_DUPLICATE_NAME);
    EXPECT_EQ(tree.log(), "") << "a line that cannot be encoded is dropped";
    EXPECT_EQ(addMatter(db.id, { beyond }), QMDB_E_FILE);
    EXPECT_EQ(addMatter(db.id, { negative }), QMDB_E_FILE);
    EXPECT_EQ(tree.changes(), "== Substance1/\n== Substance2/\n") << "no half-written file";
    EXPECT_TRUE(tree.log().starts_with("ERROR: "));
    EXPECT_EQ(addMatter(db.id, { L"A" }), 7) << "the IDs are used up";
}

// A line of the file holds 1,022 bytes; a composition that takes more could never be read again.
TEST(AddEntities, compositionsFitTheirLine)
{
    const auto parts = [](std::size_t withFiveDigits) {
        std::vector<COMPONENT> components(99, { 1000, 0.01 }); // 1,001 bytes, the key included
        std::fill_n(components.begin(), withFiveDigits, COMPONENT { 10000, 0.01 });
        return components;
    };
    const TempDatabase tree(water);
    const OpenDatabase db(tree);
    EXPECT_EQ(addMatter(db.id, { L"Too long", L"", 1, parts(22) }), QMDB_E_FORMAT);
    EXPECT_EQ(tree.log(), "ERROR: Composition line is too long: Too long\n");
    EXPECT_EQ(tree.changes(), "") << "nothing was made";
    auto bad = parts(99);
    bad.back().molarFraction = 1;
    EXPECT_EQ(addMatter(db.id, { L"Bad sum", L"", 1, bad }), QMDB_E_FRACTIONS)
        << "this check stays the first";
    EXPECT_EQ(addMatter(db.id, { L"Fits", L"", 1, parts(21) }), 6) << "the bad sum has used 5 up";
    EXPECT_EQ(addPhase(db.id, 6, L"Gas", 3), 0);
    const OpenDatabase again(tree);
    EXPECT_EQ(again.code, QMDB_OK);
    EXPECT_EQ(listing(again.id), listing(db.id));
}

} // namespace
