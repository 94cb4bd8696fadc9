// Power loss takes what has not been flushed. Nothing may appear in the tree before that on which it
// rests is on the disk, and all is there when the function returns.

#include "durability/Traced.h"
#include "support/OpenDatabase.h"

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <set>
#include <sys/syscall.h>

namespace fs = std::filesystem;

namespace {

using namespace test;

/// What is not on the disk yet: the contents of files, and names in directories.
class Unflushed {
public:
    void follow(const SystemCall& call)
    {
        const fs::path path = fs::weakly_canonical(call.path);
        if (call.result < 0 || !path.is_absolute() || path.filename() == "qmdb.log") {
            return;
        }
        switch (call.number) {
        case SYS_openat:
            if (call.flags & O_CREAT) {
                contents_.insert(path);
                names_.insert(path);
            }
            break;
        case SYS_write:
            contents_.insert(path);
            break;
        case SYS_mkdir:
        case SYS_mkdirat:
            names_.insert(path);
            break;
        case SYS_fsync:
            contents_.erase(path);
            std::erase_if(names_, [&](const fs::path& name) { return name.parent_path() == path; });
            break;
        case SYS_renameat2:
            ++renames;
            names_.erase(path);
            expectNothing("at the rename");
            names_.insert(fs::weakly_canonical(call.target));
        }
    }

    void expectNothing(const char* when) const
    {
        EXPECT_EQ(contents_, std::set<fs::path>()) << when;
        EXPECT_EQ(names_, std::set<fs::path>()) << when;
    }

    /// Data files may be lost; reading the value tells.
    void forgetData()
    {
        const auto isData = [](const fs::path& file) {
            return file.extension() == ".dat" || file.parent_path().filename() == "linked";
        };
        std::erase_if(contents_, isData);
        std::erase_if(names_, isData);
    }

    int renames = 0;

private:
    std::set<fs::path> contents_;
    std::set<fs::path> names_;
};

class Flushed : public Traced {
protected:
    enum Outcome { added, refused };

    Trace traceAddition(const TempDatabase& tree, const Plan& plan) const
    {
        return trace(plan, [&] {
            const OpenDatabase db(tree, { .logInfo = true });
            beginWatched();
            const int code = GetParam().add(db.id, 1);
            endWatched();
            return code >= QMDB_OK ? added : refused;
        });
    }
};

TEST_P(Flushed, beforeItIsNeeded)
{
    const TempDatabase tree(durableBase); // which is there when links are followed
    const Trace whole = traceAddition(tree, {});
    Unflushed unflushed;
    for (const SystemCall& call : whole.calls) {
        unflushed.follow(call);
    }
    unflushed.expectNothing("at the return");
    EXPECT_EQ(unflushed.renames, 1);
}

TEST_P(Flushed, orTheAdditionFails)
{
    Trace failed;
    Plan plan { Fault::error, 0, EIO };
    do {
        ++plan.call;
        const TempDatabase tree(durableBase);
        failed = traceAddition(tree, plan);
        SCOPED_TRACE(toText(failed));
        Unflushed unflushed;
        for (const SystemCall& call : failed.calls) {
            unflushed.follow(call);
            unflushed.forgetData();
        }
        if (failed.status == added) {
            unflushed.expectNothing("at the return");
        }
    } while (failed.struck && !HasFailure());
}

INSTANTIATE_TEST_SUITE_P(Durability, Flushed, testing::ValuesIn(additions), additionName);

} // namespace
