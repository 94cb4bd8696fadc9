// What a host's surroundings leave to the library: permissions, stack, descriptors, locale, rounding.

#include "api/additions.h"
#include "faults/FailAllocation.h"
#include "faults/Watch.h"
#include "support/OpenDatabase.h"
#include "support/Reliability.h"
#include "support/ScopedLocale.h"
#include "support/additionKinds.h"

#include <array>
#include <cfenv>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <pthread.h>
#include <set>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

using namespace test;

constexpr long water = 4;

std::set<std::string> entries(const TempDatabase& tree)
{
    std::set<std::string> paths;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(tree.root())) {
        paths.insert(entry.path());
    }
    return paths;
}

TEST(Environment, umaskLimitsWhatIsMade)
{
    for (const mode_t mask : { 0000u, 0077u }) {
        for (const Addition& addition : additions) {
            const TempDatabase tree(durableBase);
            const OpenDatabase db(tree);
            const std::set<std::string> old = entries(tree);
            const mode_t before = ::umask(mask);
            EXPECT_GE(addition.add(db.id, 1), QMDB_OK);
            ::umask(before);
            std::size_t made = 0;
            for (const std::string& path : entries(tree)) {
                if (!old.contains(path)) {
                    struct stat status { };
                    ::lstat(path.c_str(), &status);
                    EXPECT_EQ(status.st_mode & 0777, (fs::is_directory(path) ? 0750u : 0666u) & ~mask)
                        << path;
                    ++made;
                }
            }
            EXPECT_EQ(made, 2u) << addition.name;
        }
    }
}

/// Everything that a host can do, as text; calls every exported function.
std::string doEverything(const TempDatabase& tree)
{
    const OpenDatabase db(tree, { .logInfo = true });
    std::string text = std::to_string(db.code);
    for (const Addition& addition : additions) {
        for (const int number : { 1, 2 }) {
            text += " " + std::to_string(addition.add(db.id, number));
        }
    }
    Descriptions available;
    text += " "
        + std::to_string(qmdbGetAvailablePhaseParams(db.id, water, 0, &available.records, &available.count));
    return text + "\n" + listing(db.id) + valueText(db.id, { water }, 8);
}

TEST(Environment, smallStackSuffices)
{
    if (isSanitized) {
        GTEST_SKIP() << "the sanitizers need more stack";
    }
    const Tree base = durableBase
        + Tree { { "Substance1/x.prh", "ID=8\nVector=0\nType=1\nData=x" },
              { "Substance1/x", "0." + std::string(900, '3') + "\n" } };
    std::string text;
    const TempDatabase tree(base);
    std::function<void()> body = [&] { text = doEverything(tree); };
    pthread_attr_t attributes;
    ::pthread_attr_init(&attributes);
    ASSERT_EQ(::pthread_attr_setstacksize(&attributes, 65536), 0);
    pthread_t thread {};
    const auto run = [](void* function) -> void* {
        (*static_cast<std::function<void()>*>(function))();
        return nullptr;
    };
    ASSERT_EQ(::pthread_create(&thread, &attributes, run, &body), 0);
    ::pthread_join(thread, nullptr);
    ::pthread_attr_destroy(&attributes);
    EXPECT_TRUE(text.starts_with("0 5 ") && text.ends_with("0.3333333333333333")) << text;
    EXPECT_EQ(text, doEverything(TempDatabase(base)));
}

/// Leaves a number of descriptors free while it lives.
class FewDescriptors {
public:
    explicit FewDescriptors(std::size_t free)
    {
        ::getrlimit(RLIMIT_NOFILE, &before_);
        const rlimit limit { 64, before_.rlim_max };
        ::setrlimit(RLIMIT_NOFILE, &limit);
        for (int file = ::dup(0); file >= 0; file = ::dup(0)) {
            taken_.push_back(file);
        }
        for (; free > 0; --free) {
            ::close(taken_.back());
            taken_.pop_back();
        }
    }
    FewDescriptors(const FewDescriptors&) = delete;
    FewDescriptors& operator=(const FewDescriptors&) = delete;
    ~FewDescriptors()
    {
        for (const int file : taken_) {
            ::close(file);
        }
        ::setrlimit(RLIMIT_NOFILE, &before_);
    }

private:
    rlimit before_ {};
    std::vector<int> taken_;
};

/// Many substances with many phases each, some of them linked.
Tree bigTree()
{
    Tree tree = durableBase;
    for (int i = 10; i < 30; ++i) {
        const std::string substance = "S" + std::to_string(i);
        tree.push_back(
            { substance + "/s.mtd", "ID=" + std::to_string(i) + "\nName=\nMixture=\nComposition=" });
        for (int j = 0; j < (i % 2 == 0 ? 9 : 2); ++j) {
            const std::string phase = substance + "/P" + std::to_string(j);
            tree.push_back({ phase + "/p.phd", "ID=" + std::to_string(j) + "\nName=\nAggreg=1" });
            tree.push_back({ phase + "/h.prh", "../../linked/head.txt", Kind::link });
            tree.push_back({ phase + "/Property1.dat", "1 2\n" });
        }
    }
    return tree;
}

TEST(Environment, opensWithFewDescriptors)
{
    constexpr std::size_t enough = 8;
    const TempDatabase tree(bigTree());
    const std::string whole = listing(OpenDatabase(tree).id);
    Reliability reliability("environment");
    for (std::size_t free = 0; free <= enough; ++free) {
        long id = 0;
        const std::wstring path = tree.path();
        int code = 0;
        {
            const FewDescriptors few(free);
            code = qmdbOpen(path.c_str(), L"", L"", true, &id);
        }
        if (free == 0 || code != QMDB_OK) {
            EXPECT_EQ(code, QMDB_E_FILE) << free;
            EXPECT_LT(free, enough);
        } else {
            EXPECT_EQ(listing(id), whole) << free;
        }
        qmdbClose(id);
        ++reliability.cases;
    }
}

// As much as a limit of 11 leaves beside the three standard ones.
TEST(Environment, worksWithEightDescriptors)
{
    const TempDatabase tree(bigTree());
    std::string text;
    {
        const FewDescriptors few(8);
        text = doEverything(tree);
    }
    EXPECT_EQ(text, doEverything(TempDatabase(bigTree())));
}

struct LocaleCase {
    const char* name;
    const char* water; // "\u0412\u043e\u0434\u0430" in the locale's encoding; null where there is none
};

const LocaleCase localeCases[] = {
    { "C", nullptr },
    { "C.UTF-8", "\xD0\x92\xD0\xBE\xD0\xB4\xD0\xB0" },
    { "de_DE.UTF-8", "\xD0\x92\xD0\xBE\xD0\xB4\xD0\xB0" },
    { "ru_RU.UTF-8", "\xD0\x92\xD0\xBE\xD0\xB4\xD0\xB0" },
    { "ru_RU.KOI8-R", "\xF7\xCF\xC4\xC1" },
};

/// All that is done in a tree of plain names, and what it leaves.
std::string plainTraces()
{
    const TempDatabase tree(durableBase);
    const std::string done = doEverything(tree);
    return done + tree.log() + tree.changes();
}

// Numbers and plain texts are the same everywhere; names of files, and files without a mark, are the
// locale's.
TEST(Environment, locales)
{
    const std::string usual = plainTraces();
    Reliability reliability("environment");
    for (const LocaleCase& row : localeCases) {
        if (!ScopedLocale::exists(row.name)) {
            continue; // they are compiled where the machine can
        }
        SCOPED_TRACE(row.name);
        const ScopedLocale locale(row.name);
        EXPECT_EQ(plainTraces(), usual);
        ++reliability.cases;
        if (!row.water) {
            continue;
        }
        const std::string name = row.water;
        const TempDatabase tree({ { "default.lst", "" },
            { name + "/w.mtd", "ID=4\nName=" + name + "\nMixture=0\nComposition=\n" },
            { name + "/L/l.phd",
                std::string(utf8Mark) + "ID=0\nName=\xD0\x92\xD0\xBE\xD0\xB4\xD0\xB0\nAggreg=2\n" },
            { name + "/a.prh", "ID=1\nVector=0\nType=1\nData=" + name + "\n" },
            { name + "/" + name, "+1,5\n" } }); // not the shape that is read without the C library
        const OpenDatabase db(tree);
        EXPECT_EQ(addPhaseChange(db.id, water, L"\u0412\u043e\u0434\u0430", 0, 1), 0);
        const std::string listed = "matter 4 '\u0412\u043e\u0434\u0430' '' mixture 0\n"
                                   "  param 1 type 1 scalar '' '' = 1.5\n"
                                   "  phase 0 '\u0412\u043e\u0434\u0430' state 2\n"
                                   "  change 0 '\u0412\u043e\u0434\u0430' 0 to 1\n";
        EXPECT_EQ(listing(db.id), listed);
        EXPECT_EQ(reopened(tree), listed);
        EXPECT_TRUE(tree.exists(name + "/PC1/PC1.pcd"));
    }
}

/// What the C library writes; in a function of its own, so that no compiler rounds it beforehand.
std::string writtenText(double number)
{
    std::array<char, 100> text {};
    std::snprintf(text.data(), text.size(), "%lg", number);
    return text.data();
}

// A number that has no exact counterpart is read and written as the C library does it under the host's mode.
TEST(Environment, roundingModes)
{
    const char* const numbers[] = { "0.1", "-0.1", "1.7976931348623157e308", "123456789.123456789", "1e-310",
        "2.5", "9007199254740993" };
    std::string rows;
    for (int i = 0; const char* const number : numbers) {
        rows += std::to_string(i++) + " " + number + "\n";
    }
    std::set<std::string> outcomes;
    Reliability reliability("environment");
    for (const int mode : { FE_TONEAREST, FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO }) {
        const TempDatabase tree(durableBase + Tree { { "Substance1/Phase1/Property1.dat", rows } });
        const OpenDatabase db(tree);
        IDbDataConst added;
        added.value = 1.23456549;
        std::fesetround(mode);
        std::string expected = writtenText(added.value) + "\n";
        for (int i = 0; const char* const number : numbers) {
            expected += "(" + std::to_string(i++) + " " + numberText(std::strtod(number, nullptr)) + ")";
        }
        EXPECT_EQ(addParam(db.id, { water }, { 1 }, &added), QMDB_OK);
        const std::string found = valueText(db.id, { water, 0 }, 9);
        std::fesetround(FE_TONEAREST);
        EXPECT_EQ(tree.read("Substance1/Property2.dat") + found, expected) << mode;
        outcomes.insert(expected);
        ++reliability.cases;
    }
    EXPECT_EQ(outcomes.size(), 4u) << "each mode differs";
}

} // namespace
