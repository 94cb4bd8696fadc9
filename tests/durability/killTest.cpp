// An addition whose process is killed at any system call stands complete or not at all.

#include "durability/additions.h"
#include "support/OpenDatabase.h"

#include <csignal>
#include <sys/wait.h>

namespace {

using namespace test;

class Killed : public Traced {
protected:
    /// False when the addition makes fewer calls than the plan asks for.
    bool strike(const Plan& plan, const Listings& listings)
    {
        const TempDatabase tree(durableBase);
        const Trace killed = trace(plan, [&] {
            const OpenDatabase db(tree, { .logInfo = true });
            beginWatched();
            GetParam().add(db.id, 1);
            endWatched();
            ::raise(SIGKILL);
            return 0;
        });
        SCOPED_TRACE(toText(killed));
        EXPECT_TRUE(WIFSIGNALED(killed.status) && WTERMSIG(killed.status) == SIGKILL);
        const std::string found = reopened(tree);
        const bool isAdded = found == listings.first;
        EXPECT_EQ(found, isAdded || killed.isFinished ? listings.first : listings.before);
        const OpenDatabase db(tree);
        EXPECT_GE(GetParam().add(db.id, 2), QMDB_OK);
        EXPECT_EQ(reopened(tree), isAdded ? listings.both : listings.second);
        EXPECT_EQ(damage(tree), "");
        return killed.struck.has_value();
    }
};

TEST_P(Killed, leavesAllOrNothing)
{
    const Listings listings(GetParam());
    std::size_t kills = 0;
    for (const Fault fault : { Fault::killBefore, Fault::killAfter }) {
        for (std::size_t call = 1; strike({ fault, call }, listings) && !HasFailure(); ++call) {
            ++kills;
        }
    }
    EXPECT_GT(kills, 20u);
    RecordProperty("kills", static_cast<int>(kills));
}

INSTANTIATE_TEST_SUITE_P(Durability, Killed, testing::ValuesIn(additions), additionName);

} // namespace
