// An addition whose process is killed at any system call stands complete or not at all.

#include "durability/Traced.h"
#include "support/OpenDatabase.h"
#include "support/Reliability.h"

#include <csignal>
#include <filesystem>
#include <sys/wait.h>

namespace fs = std::filesystem;

namespace {

using namespace test;

class Killed : public Traced {
protected:
    /// Adds and is killed; false when the addition makes fewer calls than the plan asks for.
    bool strike(const TempDatabase& tree, const Plan& plan) const
    {
        const Trace killed = trace(plan, [&] {
            const OpenDatabase db(tree, { .logInfo = true });
            beginWatched();
            GetParam().add(db.id, 1);
            endWatched();
            ::raise(SIGKILL);
            return 0;
        });
        EXPECT_TRUE(WIFSIGNALED(killed.status) && WTERMSIG(killed.status) == SIGKILL) << toText(killed);
        return killed.struck.has_value();
    }

    /// Adds the other entity beside what the kill has left.
    void expectAllOrNothing(const TempDatabase& tree, bool wasKilled) const
    {
        const std::string found = reopened(tree);
        const bool isAdded = found == listings.first;
        EXPECT_EQ(found, isAdded || !wasKilled ? listings.first : listings.before);
        const OpenDatabase db(tree);
        EXPECT_GE(GetParam().add(db.id, 2), QMDB_OK);
        EXPECT_EQ(reopened(tree), isAdded ? listings.both : listings.second);
        EXPECT_EQ(damage(tree), "");
    }

    template <class Check>
    void strikeEverywhere(const FileSystem fileSystem, Check&& check)
    {
        Reliability kills("kill at every call");
        for (const Fault fault : { Fault::killBefore, Fault::killAfter }) {
            bool wasKilled = true;
            for (std::size_t call = 1; wasKilled && !HasFailure(); ++call, ++kills.cases) {
                SCOPED_TRACE("call " + std::to_string(call));
                const TempDatabase tree(durableBase);
                const Plan plan { fault, call, 0, fileSystem };
                wasKilled = strike(tree, plan);
                check(tree, plan, wasKilled);
            }
        }
        EXPECT_GT(kills.cases, 20u);
    }

    const Listings listings { GetParam() };
};

TEST_P(Killed, leavesAllOrNothing)
{
    for (const FileSystem fileSystem : { FileSystem::usual, FileSystem::withoutExclusiveRename }) {
        strikeEverywhere(fileSystem, [this](const TempDatabase& tree, const Plan&, bool wasKilled) {
            expectAllOrNothing(tree, wasKilled);
        });
    }
}

TEST_P(Killed, againBesideWhatTheFirstKillLeft)
{
    for (const FileSystem fileSystem : { FileSystem::usual, FileSystem::withoutExclusiveRename }) {
        bool isReached = true;
        // 0 stands for the call at which the first kill came.
        for (std::size_t second = 0; isReached && (second == 0 || isLongRun()) && !HasFailure(); ++second) {
            isReached = false;
            strikeEverywhere(fileSystem, [&](const TempDatabase& tree, Plan plan, bool wasKilled) {
                if (reopened(tree) == listings.before) {
                    plan.call = second == 0 ? plan.call : second;
                    wasKilled = strike(tree, plan);
                    isReached = isReached || wasKilled;
                }
                expectAllOrNothing(tree, wasKilled);
            });
        }
    }
}

// Such a file system has nothing that would make a whole file appear at once: the kill may leave a descriptor
// that is not whole. It is refused by name, and nothing else is lost.
TEST_P(Killed, whereDescriptorsAreWrittenInPlace)
{
    std::size_t halves = 0;
    strikeEverywhere(FileSystem::plain, [&](const TempDatabase& tree, const Plan&, bool wasKilled) {
        const OpenDatabase db(tree);
        if (db.code != QMDB_OK) {
            EXPECT_EQ(db.code, QMDB_E_REQUIRED_KEY);
            const std::string log = tree.log();
            const std::string_view message = "No required field(s) in file: $/";
            const std::size_t start = log.find(message) + message.size();
            EXPECT_TRUE(fs::remove(fs::path(tree.root()) / log.substr(start, log.find('\n', start) - start)))
                << log;
            ++halves;
        }
        expectAllOrNothing(tree, wasKilled);
    });
    EXPECT_GT(halves, 0u);
}

INSTANTIATE_TEST_SUITE_P(Durability, Killed, testing::ValuesIn(additions), additionName);

} // namespace
