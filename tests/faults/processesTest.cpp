// Several processes on one tree.

#include "api/additions.h"
#include "support/OpenDatabase.h"
#include "support/Reliability.h"

#include <functional>
#include <gtest/gtest.h>
#include <ostream>
#include <span>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using namespace test;

constexpr long water = 4;

class Child {
public:
    /// `body` returns the exit status.
    explicit Child(const std::function<int()>& body)
        : process_(::fork())
    {
        if (process_ == 0) {
            ::_exit(body());
        }
    }
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    bool isRunning() { return ::waitpid(process_, &status_, WNOHANG) == 0; }
    int status() const { return WIFEXITED(status_) ? WEXITSTATUS(status_) : -1; }

private:
    pid_t process_;
    int status_ = 0;
};

double valueOf(long parameter)
{
    return static_cast<double>(parameter) + 0.25;
}

int addMany(long database, long phase, long first, long count)
{
    int failures = 0;
    for (long id = first; id < first + count; ++id) {
        IDbDataConst value;
        value.value = valueOf(id);
        failures += addParam(database, { water, phase }, { id }, &value) == QMDB_OK ? 0 : 1;
    }
    return failures == 0 ? 0 : 1;
}

/// Checks every parameter that a database shows; returns their number.
int countRight(const TempDatabase& tree, long phase)
{
    const OpenDatabase db(tree);
    EXPECT_EQ(db.code, QMDB_OK) << tree.log();
    Parameters found;
    qmdbGetPhaseParams(db.id, water, phase, &found.records, &found.count);
    for (const PARAMETER& param : found) {
        EXPECT_EQ(valueText(db.id, { water, phase }, param.id), numberText(valueOf(param.id)));
    }
    return found.count;
}

/// Runs two processes, which must end with 0, and `look` here until both have ended.
void whileBoth(
    const std::function<int()>& one, const std::function<int()>& other, const std::function<void()>& look)
{
    Child first(one);
    Child second(other);
    for (bool isRunning = true; isRunning;) {
        const bool isFirstRunning = first.isRunning();
        isRunning = second.isRunning() || isFirstRunning;
        look();
    }
    EXPECT_EQ(first.status(), 0);
    EXPECT_EQ(second.status(), 0);
}

struct Writers {
    const char* name;
    bool isForked; ///< with the database open; else each opens its own
    long phases; ///< of the two writers
};

std::ostream& operator<<(std::ostream& out, const Writers& writers)
{
    return out << writers.name;
}

class Processes : public testing::TestWithParam<Writers> { };

TEST_P(Processes, addToOneTree)
{
    Reliability reliability("two processes add, a third one opens");
    const int count = isLongRun() ? 2000 : 400;
    Tree base = { { "default.lst", "" }, { "W/w.mtd", "ID=4\nName=Water\nMixture=0\nComposition=\n" },
        { "W/L/l.phd", "ID=0\nName=Liquid\nAggreg=2\n" }, { "W/S/s.phd", "ID=1\nName=Solid\nAggreg=1\n" } };
    for (int id = 0; id < 2 * count; ++id) {
        const std::string number = std::to_string(id);
        base.push_back({ number + ".prd",
            "ID=" + number + "\nName=\nUnits=\nBinary=\nScalar=1\nAvForPhases=SL\nDataTypes=C\n" });
    }
    const TempDatabase tree(base);
    const TempDatabase logs({});
    const OpenDatabase shared(tree, { .logDir = logs.path() });
    const auto write = [&](long phase, long first) {
        if (GetParam().isForked) {
            return addMany(shared.id, phase, first, count);
        }
        const OpenDatabase own(tree, { .logDir = logs.path() });
        return addMany(own.id, phase, first, count);
    };
    const long secondPhase = GetParam().phases - 1;
    int seen = 0;
    const auto look = [&] {
        const int now = countRight(tree, 0);
        EXPECT_GE(now, seen) << "nothing that was seen goes again";
        seen = now;
    };
    whileBoth([&] { return write(0, 0); }, [&] { return write(secondPhase, count); }, look);
    reliability.cases = static_cast<std::size_t>(2 * count);
    EXPECT_EQ(countRight(tree, 0), secondPhase == 0 ? 2 * count : count);
    EXPECT_EQ(countRight(tree, 1), secondPhase == 0 ? 0 : count);
    EXPECT_EQ(tree.changes().find(".tmp"), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(Faults, Processes,
    testing::Values(Writers { "onePhase", false, 1 }, Writers { "twoPhases", false, 2 },
        Writers { "oneDatabaseForked", true, 1 }),
    [](const auto& info) { return info.param.name; });

/// What other processes write is seen here.
template <class Number>
std::span<Number> sharedNumbers(std::size_t count)
{
    void* const memory
        = ::mmap(nullptr, count * sizeof(Number), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    return { static_cast<Number*>(memory), memory == MAP_FAILED ? 0 : count };
}

/// Adds substances with a phase and a phase change each, all named after their number, and counts in `made`
/// what each number has got. Only a substance may be refused, for another process has taken the name chosen
/// for it.
int addSubstances(
    const TempDatabase& tree, const std::wstring& logs, std::span<int> made, int first, int count)
{
    const OpenDatabase db(tree, { .logDir = logs });
    bool isRight = db.code == QMDB_OK;
    for (int i = first; i < first + count; ++i) {
        const std::wstring name = L"Added " + std::to_wstring(i) + L".";
        const int matter = addMatter(db.id, { name });
        if (matter < 0) {
            isRight = isRight && matter == QMDB_E_FILE;
            continue;
        }
        isRight = isRight && addPhase(db.id, matter, name, MATTER_STATE_SOLID) == 0
            && addPhaseChange(db.id, matter, name, 0, 1) == 0;
        made[static_cast<std::size_t>(i)] = 3;
    }
    return isRight ? 0 : 1;
}

/// How often a text occurs.
int occurrences(const std::string& text, const std::string& what)
{
    int count = 0;
    for (std::size_t at = text.find(what); at != text.npos; at = text.find(what, at + what.size())) {
        ++count;
    }
    return count;
}

// Their IDs may be the same, as each process goes by what it has opened, and of two that choose one name at
// once one is refused. What is acknowledged has files of its own.
TEST(Process, addSubstancesToOneRoot)
{
    Reliability reliability("two processes add, a third one opens");
    const int count = isLongRun() ? 2000 : 400; // of three additions each
    const TempDatabase tree(Tree { { "default.lst", "" } });
    const TempDatabase logs({});
    const std::span<int> made = sharedNumbers<int>(static_cast<std::size_t>(2 * count));
    ASSERT_FALSE(made.empty());
    const auto look = [&] { EXPECT_EQ(OpenDatabase(tree).code, QMDB_OK) << tree.log(); };
    whileBoth([&] { return addSubstances(tree, logs.path(), made, 0, count); },
        [&] { return addSubstances(tree, logs.path(), made, count, count); }, look);
    const std::string changes = tree.changes();
    int all = 0;
    for (std::size_t i = 0; i < made.size(); ++i) {
        ASSERT_EQ(occurrences(changes, "\nName=Added " + std::to_string(i) + ".\n"), made[i]) << i;
        all += made[i];
    }
    EXPECT_EQ(occurrences(changes, "== "), all) << "nothing else was made";
    EXPECT_GT(all, 3 * count) << "few are refused";
    reliability.cases = static_cast<std::size_t>(6 * count);
    ::munmap(made.data(), made.size_bytes());
}

// A child has the image of its parent, and begins to watch anew what both change.
TEST(Process, childGoesOnWithAnOpenDatabase)
{
    const TempDatabase tree(Tree { { "default.lst", "" } });
    const OpenDatabase db(tree);
    const auto add = [&](const wchar_t* name) {
        const int matter = addMatter(db.id, { name });
        return matter >= 0 && addPhase(db.id, matter, L"Solid", MATTER_STATE_SOLID) == 0;
    };
    EXPECT_TRUE(add(L"One") && add(L"Two"));
    const std::string before = listing(db.id);
    for (const wchar_t* const name : { L"By the first child", L"By the second child" }) {
        const auto body = [&] {
            const bool isRight = listing(db.id) == before && add(name) && qmdbClose(db.id) == QMDB_OK;
            return isRight ? 0 : 1;
        };
        Child child(body);
        while (child.isRunning()) { }
        EXPECT_EQ(child.status(), 0);
        EXPECT_EQ(listing(db.id), before) << "the parent's image is its own";
    }
    EXPECT_TRUE(add(L"By the parent"));
    const std::string changes = tree.changes();
    for (const char* const name :
        { "One", "Two", "By the first child", "By the second child", "By the parent" }) {
        EXPECT_EQ(occurrences(changes, std::string("\nName=") + name + "\n"), 1) << name;
    }
}

} // namespace
