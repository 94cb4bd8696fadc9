// Several processes on one tree, and processes that allow the library little.

#include "api/additions.h"
#include "faults/FailAllocation.h"
#include "faults/Watch.h"
#include "support/OpenDatabase.h"
#include "support/Reliability.h"
#include "support/additionKinds.h"

#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <pthread.h>
#include <set>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace fs = std::filesystem;

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
    Child first([&] { return write(0, 0); });
    Child second([&] { return write(secondPhase, count); });
    int seen = 0;
    for (bool isRunning = true; isRunning;) {
        const bool isFirstRunning = first.isRunning();
        isRunning = second.isRunning() || isFirstRunning;
        const int now = countRight(tree, 0);
        EXPECT_GE(now, seen);
        seen = now;
    }
    EXPECT_EQ(first.status(), 0);
    EXPECT_EQ(second.status(), 0);
    EXPECT_EQ(countRight(tree, 0), secondPhase == 0 ? 2 * count : count);
    EXPECT_EQ(countRight(tree, 1), secondPhase == 0 ? 0 : count);
    EXPECT_EQ(tree.changes().find(".tmp"), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(Faults, Processes,
    testing::Values(Writers { "onePhase", false, 1 }, Writers { "twoPhases", false, 2 },
        Writers { "oneDatabaseForked", true, 1 }),
    [](const auto& info) { return info.param.name; });

std::set<std::string> entries(const TempDatabase& tree)
{
    std::set<std::string> paths;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(tree.root())) {
        paths.insert(entry.path());
    }
    return paths;
}

TEST(Process, umaskLimitsWhatIsMade)
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

TEST(Process, smallStackSuffices)
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

TEST(Process, opensWithFewDescriptors)
{
    constexpr std::size_t enough = 8;
    const TempDatabase tree(bigTree());
    const std::string whole = listing(OpenDatabase(tree).id);
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
    }
}

} // namespace
