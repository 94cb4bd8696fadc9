// Names of new entries while others change the directory: always the first free number.

#include "api/additions.h"
#include "support/trees.h"

#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <new>
#include <random>
#include <set>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using namespace test;
namespace fs = std::filesystem;

constexpr long mostNumber = 60; // few, so that changes meet

std::string substanceName(long number)
{
    return "Substance" + std::to_string(number);
}

std::set<long> takenNumbers(const std::string& root)
{
    std::set<long> taken;
    for (const fs::directory_entry& entry : fs::directory_iterator(root)) {
        const std::string name = entry.path().filename();
        if (name.starts_with("Substance")
            && (!entry.is_symlink() || fs::exists(entry.path()))) { // a link to nothing blocks nothing
            taken.insert(std::stol(name.substr(9)));
        }
    }
    return taken;
}

long firstFree(const std::set<long>& taken)
{
    long number = 1;
    while (taken.contains(number)) {
        ++number;
    }
    return number;
}

/// Another program's one change: an entry appears, goes, changes its name, or leaves or enters the directory.
void changeAtRandom(std::mt19937& random, const std::string& root)
{
    const auto pick
        = [&] { return root + "/" + substanceName(1 + static_cast<long>(random() % mostNumber)); };
    const std::string elsewhere = root + "/elsewhere/" + std::to_string(random() % 4);
    std::error_code ignored;
    switch (random() % 6) {
    case 0:
        fs::create_directory(pick(), ignored);
        break;
    case 1:
        std::ofstream(pick(), std::ios::app).close();
        break;
    case 2:
        fs::rename(pick(), pick(), ignored);
        break;
    case 3:
        fs::rename(pick(), elsewhere, ignored);
        break;
    case 4:
        fs::rename(elsewhere, pick(), ignored);
        break;
    default:
        fs::remove_all(pick(), ignored);
    }
}

/// Takes away what lies beyond the numbers that others change.
void keepSmall(const TempDatabase& tree, long number)
{
    if (number > mostNumber) {
        fs::remove_all(tree.root() + "/" + substanceName(number));
    }
}

int addNumbered(long database, long number)
{
    return addMatter(database, { L"Added " + std::to_wstring(number) });
}

TEST(Growth, firstFreeNumberWhateverOthersDo)
{
    const TempDatabase tree(Tree { { "default.lst", "" }, { "elsewhere/", "" } });
    const OpenDatabase db(tree);
    std::mt19937 random(11);
    for (long i = 0; i < 10000; ++i) {
        for (auto changes = random() % 4; changes > 0; --changes) {
            changeAtRandom(random, tree.root());
        }
        if (i > 9000 && random() % 4 == 0) {
            // A link blocks its number while there is something that it leads to.
            const std::string link = tree.root() + "/" + substanceName(3);
            if (!fs::is_symlink(link)) {
                fs::remove_all(link);
                fs::create_symlink("elsewhere/target", link);
            }
            random() % 2 ? tree.make({ "elsewhere/target", "" }) : tree.remove("elsewhere/target");
        }
        const std::string expected = substanceName(firstFree(takenNumbers(tree.root())));
        const int code = addNumbered(db.id, i);
        const bool isLink = fs::is_symlink(tree.root() + "/" + expected);
        ASSERT_EQ(code, isLink ? QMDB_E_FILE : static_cast<int>(i)) << "a link to nothing cannot be replaced";
        if (isLink) {
            fs::remove(tree.root() + "/" + expected);
            ASSERT_GE(addNumbered(db.id, i), 0);
        }
        ASSERT_TRUE(tree.exists(expected + "/" + expected + ".mtd")) << expected << " at " << i;
        keepSmall(tree, firstFree(takenNumbers(tree.root())) - 1);
    }
}

/// Shared with the process that makes changes.
struct Turns {
    std::atomic<long> wanted { 0 };
    std::atomic<long> done { 0 };
};

[[noreturn]] void changeWhenTold(Turns& turns, const std::string& root)
{
    std::mt19937 random(12);
    for (long turn = 0; turn >= 0;) {
        const long wanted = turns.wanted;
        if (wanted > turn) {
            changeAtRandom(random, root);
            ++turns.done;
        }
        turn = wanted;
    }
    ::_exit(0);
}

TEST(Growth, namesThatListingsBeforeAndAfterAllow)
{
    const TempDatabase tree(Tree { { "default.lst", "" }, { "elsewhere/", "" } });
    void* const shared
        = ::mmap(nullptr, sizeof(Turns), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    auto& turns = *new (shared) Turns;
    const pid_t other = ::fork();
    if (other == 0) {
        changeWhenTold(turns, tree.root());
    }
    const OpenDatabase db(tree, { .logInfo = true });
    long judged = 0;
    for (long i = 0; i < 10000 && !HasFailure(); ++i) {
        tree.clearLog();
        const long doneBefore = turns.done;
        const std::set<long> before = takenNumbers(tree.root());
        ++turns.wanted;
        const int code = addNumbered(db.id, i);
        const std::set<long> after = takenNumbers(tree.root());
        const std::string log = tree.log();
        const std::size_t at = log.find("/Substance");
        if (code < 0 || at == log.npos || turns.done - doneBefore > 1) {
            EXPECT_TRUE(code >= 0 || code == QMDB_E_FILE);
            continue; // the other one was faster, or has made two changes meanwhile
        }
        const long number = std::stol(log.substr(at + 10));
        keepSmall(tree, number);
        ++judged;
        EXPECT_TRUE(turns.done != doneBefore || number == firstFree(before));
        for (long smaller = 1; smaller < number; ++smaller) {
            EXPECT_TRUE(before.contains(smaller) || after.contains(smaller))
                << smaller << " was free for " << number;
        }
    }
    turns.wanted = -1;
    ::waitpid(other, nullptr, 0);
    ::munmap(shared, sizeof(Turns));
    EXPECT_GT(judged, 100);
}

// The system drops what nobody has read for long, and says so.
TEST(Growth, afterMoreChangesThanTheSystemKeeps)
{
    const TempDatabase tree(Tree { { "default.lst", "" } });
    const OpenDatabase db(tree);
    EXPECT_TRUE(addNumbered(db.id, 0) == 0 && addNumbered(db.id, 1) == 1);
    std::ifstream in("/proc/sys/fs/inotify/max_queued_events");
    long most = 0;
    in >> most;
    for (long i = 0; i < std::min(most, 100000L); ++i) { // two changes each
        const std::string path = tree.root() + "/entry";
        std::ofstream(path).close();
        fs::remove(path);
    }
    tree.make({ "Substance3/", "" });
    EXPECT_EQ(addNumbered(db.id, 2), 2);
    EXPECT_TRUE(tree.exists("Substance4/Substance4.mtd"));
}

// Where a new directory gets the old one's inode, as on ext4, it is none the less another one.
TEST(Growth, inADirectoryThatHasGoneAndComeAgain)
{
    const TempDatabase tree(Tree { { "default.lst", "" } });
    const OpenDatabase db(tree);
    EXPECT_EQ(addNumbered(db.id, 0), 0);
    EXPECT_TRUE(addPhase(db.id, 0, L"A", 1) == 0 && addPhase(db.id, 0, L"B", 1) == 1);
    fs::remove_all(tree.root() + "/Substance1");
    EXPECT_EQ(addPhase(db.id, 0, L"C", 1), QMDB_E_FILE);
    fs::create_directory(tree.root() + "/Substance1");
    tree.make({ "Substance1/Phase1/", "" });
    EXPECT_GE(addPhase(db.id, 0, L"D", 1), 0);
    EXPECT_TRUE(tree.exists("Substance1/Phase2/Phase2.phd"));
    EXPECT_GE(addPhase(db.id, 0, L"E", 1), 0);
    EXPECT_TRUE(tree.exists("Substance1/Phase3/Phase3.phd"));
}

TEST(Growth, inMoreDirectoriesThanAreWatched)
{
    constexpr int number = 12;
    const TempDatabase tree(Tree { { "default.lst", "" } });
    const OpenDatabase db(tree);
    for (int i = 0; i < number; ++i) {
        EXPECT_EQ(addNumbered(db.id, i), i);
    }
    for (int round = 1; round < 10; round += 3) {
        for (int i = 0; i < number; ++i) {
            const std::string substance = substanceName(i + 1);
            EXPECT_GE(addPhase(db.id, i, std::to_wstring(round), 1), 0);
            EXPECT_GE(addPhase(db.id, i, std::to_wstring(round) + L".", 1), 0);
            tree.make({ substance + "/Phase" + std::to_string(round + 2) + "/", "" });
            EXPECT_TRUE(tree.exists(substance + "/Phase" + std::to_string(round + 1) + "/Phase"
                + std::to_string(round + 1) + ".phd"));
        }
    }
}

// The two processes share what the system reports of the directory; each must see all of it.
TEST(Growth, bothProcessesOfAForkFindTheFirstFreeNumber)
{
    const TempDatabase tree(Tree { { "default.lst", "" } });
    const OpenDatabase db(tree);
    long added = 0;
    for (int round = 0; round < 20; ++round) {
        for (int i = 0; i < 3; ++i) {
            const std::string expected = substanceName(firstFree(takenNumbers(tree.root())));
            ASSERT_GE(addNumbered(db.id, ++added), 0);
            ASSERT_TRUE(tree.exists(expected + "/" + expected + ".mtd"));
        }
        const pid_t child = ::fork();
        if (child == 0) {
            int codes = 0;
            for (long i = 0; i < 3; ++i) {
                codes |= addNumbered(db.id, 1000 + i) < 0 ? 1 : 0;
            }
            ::_exit(codes);
        }
        int status = 0;
        ::waitpid(child, &status, 0);
        ASSERT_EQ(status, 0);
    }
}

// IDs that come in descending order, and between others, find their place.
TEST(Growth, parametersInAnyOrderOfIds)
{
    Tree described = water;
    for (int id = 100; id < 160; ++id) {
        described.push_back({ std::to_string(id) + ".prd",
            "ID=" + std::to_string(id)
                + "\nName=N\nUnits=u\nBinary=0\nScalar=1\nAvForPhases=L\nDataTypes=C\n" });
    }
    const TempDatabase tree(described);
    const OpenDatabase db(tree);
    for (int i = 0; i < 60; ++i) {
        IDbDataConst value;
        value.value = i;
        ASSERT_EQ(addParam(db.id, { 4, 2 }, { i % 2 ? 100 + i : 158 - i }, &value), QMDB_OK) << i;
    }
    EXPECT_EQ(listing(OpenDatabase(tree).id), listing(db.id));
}

} // namespace
