// An addition to which the system refuses something fails cleanly or succeeds completely.

#include "durability/additions.h"
#include "support/OpenDatabase.h"

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>

namespace {

using namespace test;

/// Exit status of the process that makes the failing addition.
enum Outcome { added, refused, valueLost, faulty };

/// The new parameter stays, its value goes.
std::string withoutFirstValue(std::string listing)
{
    const std::size_t start = listing.find("'First'");
    return start == listing.npos ? listing : listing.erase(start, listing.find('\n', start) - start);
}

class Refused : public Traced {
protected:
    /// False when the addition makes fewer calls than the plan asks for.
    bool strike(const Plan& plan, const Listings& listings)
    {
        const TempDatabase tree(durableBase);
        const Trace failed = trace(plan, [&] { return addAndCheck(tree, plan.fault, listings); });
        SCOPED_TRACE(toText(failed));
        const int outcome = WIFEXITED(failed.status) ? WEXITSTATUS(failed.status) : faulty;
        EXPECT_NE(outcome, faulty);
        const SystemCall struck = failed.struck.value_or(SystemCall {});
        if (!struck.path.ends_with(".dat") || struck.number != SYS_openat) {
            // A data file that cannot be opened is the one failure that an addition does not report.
            EXPECT_NE(outcome, valueLost);
        }
        if (plan.error == EINVAL && (struck.number == SYS_renameat2 || struck.number == SYS_fsync)) {
            EXPECT_EQ(outcome, added) << "not every file system has this operation";
        }
        return failed.struck.has_value();
    }

private:
    Outcome addAndCheck(const TempDatabase& tree, Fault fault, const Listings& listings) const
    {
        const OpenDatabase db(tree, { .logInfo = true });
        beginWatched();
        const int code = GetParam().add(db.id, 1);
        endWatched();
        addMissingPhases(db.id);
        const std::string shown = listing(db.id);
        if (code < QMDB_OK) {
            EXPECT_EQ(code, QMDB_E_FILE);
            EXPECT_EQ(shown, listings.before);
        } else {
            EXPECT_EQ(withoutFirstValue(shown), withoutFirstValue(listings.first));
        }
        const std::string found = reopened(tree);
        // What is in place already cannot be taken away again while the disk refuses everything.
        if (fault == Fault::errorOnce || found != listings.first) {
            EXPECT_EQ(found, shown);
            EXPECT_GE(GetParam().add(db.id, 2), QMDB_OK);
            addMissingPhases(db.id);
            EXPECT_NE(listing(db.id), shown);
            EXPECT_EQ(reopened(tree), listing(db.id));
        }
        EXPECT_EQ(damage(tree), "");
        return HasFailure() ? faulty : code < QMDB_OK ? refused : shown == listings.first ? added : valueLost;
    }
};

TEST_P(Refused, losesNothing)
{
    const Plan plans[]
        = { { Fault::errorOnce, 0, EIO }, { Fault::errorOnce, 0, ENOSPC }, { Fault::errorOnce, 0, EACCES },
              { Fault::errorOnce, 0, EINVAL }, { Fault::errorFromThereOn, 0, EIO } };
    const Listings listings(GetParam());
    std::size_t failures = 0;
    for (Plan plan : plans) {
        for (plan.call = 1; strike(plan, listings) && !HasFailure(); ++plan.call) {
            ++failures;
        }
    }
    EXPECT_GT(failures, 50u);
    RecordProperty("failures", static_cast<int>(failures));
}

INSTANTIATE_TEST_SUITE_P(Durability, Refused, testing::ValuesIn(additions), additionName);

int addToFullDisk(const Addition& addition, long database, const TempDatabase&)
{
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit before {};
    ::getrlimit(RLIMIT_FSIZE, &before);
    const rlimit full { 0, before.rlim_max };
    ::setrlimit(RLIMIT_FSIZE, &full);
    const int code = addition.add(database, 1);
    ::setrlimit(RLIMIT_FSIZE, &before);
    return code;
}

int addWithoutMedium(const Addition& addition, long database, const TempDatabase& tree)
{
    const std::string away = tree.root() + "-away";
    std::filesystem::rename(tree.root(), away);
    const int code = addition.add(database, 1);
    std::filesystem::rename(away, tree.root());
    return code;
}

/// Failures in the test's own process, where the leak checker works.
class Troubled : public testing::TestWithParam<Addition> { };

TEST_P(Troubled, failsCleanly)
{
    for (const auto add : { addToFullDisk, addWithoutMedium }) {
        const TempDatabase tree(durableBase);
        const OpenDatabase db(tree);
        const std::string before = listing(db.id);
        EXPECT_EQ(add(GetParam(), db.id, tree), QMDB_E_FILE);
        EXPECT_EQ(listing(db.id), before);
        EXPECT_EQ(reopened(tree), before);
        EXPECT_EQ(tree.changes().find(".tmp"), std::string::npos);
        EXPECT_GE(GetParam().add(db.id, 1), QMDB_OK);
    }
}

INSTANTIATE_TEST_SUITE_P(Durability, Troubled, testing::ValuesIn(additions), additionName);

} // namespace
