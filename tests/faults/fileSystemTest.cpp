// File systems that move few bytes at a time, lack operations, or have leases.

#include "faults/Watch.h"
#include "support/OpenDatabase.h"
#include "support/additionKinds.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using namespace test;

int letThrough(const SystemCall&)
{
    return 0;
}

/// What an addition leaves in the tree and in the log.
std::string traces(const Addition& addition, const Watch::Rule& rule, std::size_t piece = Watch::whole)
{
    const TempDatabase tree(durableBase);
    Watch watch(rule, piece);
    const OpenDatabase db(tree, { .logInfo = true });
    const int code = addition.add(db.id, 1);
    watch.stop();
    return std::to_string(code) + "\n" + tree.log() + tree.changes();
}

class FileSystem : public testing::TestWithParam<Addition> {
protected:
    const std::string usual = traces(GetParam(), letThrough);
};

INSTANTIATE_TEST_SUITE_P(Faults, FileSystem, testing::ValuesIn(additions), additionName);

TEST_P(FileSystem, movesFewBytesAtATime)
{
    for (const std::size_t piece : { 1u, 3u, 7u, 100u }) {
        EXPECT_EQ(traces(GetParam(), letThrough, piece), usual) << piece;
        const TempDatabase tree(durableBase);
        const OpenDatabase db(tree);
        GetParam().add(db.id, 1);
        const std::string shown = listing(db.id);
        const std::string opened = listing(OpenDatabase(tree).id);
        const Watch watch(letThrough, piece);
        EXPECT_EQ(listing(db.id), shown);
        EXPECT_EQ(listing(OpenDatabase(tree).id), opened);
    }
}

TEST_P(FileSystem, lacksOperations)
{
    for (const int move : { EINVAL, ENOSYS }) {
        for (const int link : { 0, EPERM, ENOSYS }) {
            const auto rule = [&](const SystemCall& call) {
                return call.call == Call::move ? move : call.call == Call::link ? link : 0;
            };
            EXPECT_EQ(traces(GetParam(), rule), usual) << move << " and " << link;
        }
    }
    for (const int error : { EINVAL, ENOTSUP, ENOSYS, ENOTTY, EBADF }) {
        const auto rule = [&](const SystemCall& call) {
            struct stat status { };
            const bool isDirectory = call.call == Call::sync && ::fstat(call.descriptor, &status) == 0
                && S_ISDIR(status.st_mode);
            return isDirectory ? error : 0;
        };
        EXPECT_EQ(traces(GetParam(), rule), usual) << error;
    }
}

// What another program has put in the descriptor's place meanwhile stays, and nothing half stands beside it.
TEST_P(FileSystem, isSharedWithOthers)
{
    for (const int answer : { 0, EINVAL }) {
        for (const bool isDirectory : { false, true }) {
            const TempDatabase tree(durableBase);
            const OpenDatabase db(tree);
            const std::string before = listing(db.id);
            std::string theirs;
            const auto rule = [&](const SystemCall& call) {
                if (call.call == Call::move) {
                    theirs = call.path;
                    isDirectory ? ::mkdirat(call.descriptor, call.path, 0700)
                                : ::close(::openat(call.descriptor, call.path, O_CREAT | O_EXCL, 0600));
                }
                return call.call == Call::move || call.call == Call::link ? answer : 0;
            };
            Watch watch(rule);
            EXPECT_EQ(GetParam().add(db.id, 1), QMDB_E_FILE);
            watch.stop();
            EXPECT_EQ(listing(db.id), before);
            const std::string changes = tree.changes();
            EXPECT_NE(changes.find("/" + theirs + (isDirectory ? "/\n" : "\n")), changes.npos) << changes;
            EXPECT_EQ(changes.find(".tmp"), changes.npos) << changes;
            EXPECT_EQ(changes.find("ID="), changes.npos) << changes;
        }
    }
}

int answerAsIfLeased(const SystemCall& call)
{
    struct stat status { };
    const bool isLeased = call.call == Call::open && (call.flags & O_NONBLOCK)
        && ::fstatat(call.descriptor, call.path, &status, 0) == 0 && S_ISREG(status.st_mode);
    return isLeased ? EWOULDBLOCK : 0;
}

TEST_P(FileSystem, answersThatFilesAreLeased)
{
    EXPECT_EQ(traces(GetParam(), answerAsIfLeased), usual);
}

struct BigFile {
    const char* path;
    const char* start;
    int code;
    std::string log;
};

// The failure comes late: not the end of the file.
TEST(ReadError, behindTheFirstBytes)
{
    const auto failLate = [](const SystemCall& call) {
        return call.call == Call::read && ::lseek(call.descriptor, 0, SEEK_CUR) >= 4096 ? EIO : 0;
    };
    const BigFile files[] = {
        { "default.lst", "7=text\n", QMDB_OK, "ERROR: Cannot read from  file: $/default.lst\n" },
        { "1.prd", "ID=1\nName=First\nUnits=u\nBinary=0\n", QMDB_E_READ, {} },
        { "Substance1/Substance1.mtd", "ID=4\nName=Water\nMixture=0\nComposition=\n", QMDB_E_READ, {} },
        { "Substance1/Phase1/Phase1.phd", "ID=0\nName=Liquid\nAggreg=2\n", QMDB_E_READ, {} },
        { "Substance1/PC1/PC1.pcd", "ID=0\nName=Boiling\nPhase1=0\nPhase2=1\n", QMDB_E_READ, {} },
        { "Substance1/Property1.prh", "ID=9\nVector=0\nType=1\nData=Property1.dat\n", QMDB_E_READ, {} },
    };
    std::string filler;
    for (int i = 0; i < 1000; ++i) {
        filler += "key" + std::to_string(i) + "=value\n";
    }
    for (const BigFile& file : files) {
        SCOPED_TRACE(file.path);
        const TempDatabase tree(durableBase + Tree { { file.path, file.start + filler } });
        const Watch watch(failLate, 4096);
        const OpenDatabase db(tree);
        EXPECT_EQ(db.code, file.code);
        const std::string log = tree.log();
        EXPECT_TRUE(log.starts_with(std::string("ERROR: Cannot read from  file: $/") + file.path + "\n"))
            << log;
    }
    std::string rows;
    for (int i = 0; i < 1000; ++i) {
        rows += std::to_string(i) + " 1\n";
    }
    for (const char* const kind : { "1", "2", "4" }) {
        const bool is2D = *kind == '4';
        const TempDatabase tree(durableBase
            + Tree { { "Substance1/Property1.dat", (is2D ? "P=1\n" : "") + rows },
                { "Substance1/Property1.prh",
                    std::string("ID=9\nVector=0\nType=") + kind + "\nData=Property1.dat\n" } });
        const OpenDatabase db(tree);
        const Watch watch(failLate, 4096);
        EXPECT_EQ(valueText(db.id, { 4 }, 9), "error -7") << kind;
        EXPECT_EQ(tree.log(), "ERROR: Cannot read parameter data file: $/Substance1/Property1.dat\n");
    }
}

/// A process that holds a lease on a file and gives it up when the system asks for it.
class Leaseholder {
public:
    explicit Leaseholder(const std::string& file)
    {
        std::array<int, 2> ends {};
        EXPECT_EQ(::pipe(ends.data()), 0);
        process_ = ::fork();
        if (process_ == 0) {
            hold(file, ends[1]);
        }
        ::close(ends[1]);
        char byte = 0;
        holds_ = ::read(ends[0], &byte, 1) == 1;
        ::close(ends[0]);
    }
    Leaseholder(const Leaseholder&) = delete;
    Leaseholder& operator=(const Leaseholder&) = delete;
    ~Leaseholder()
    {
        ::kill(process_, SIGKILL);
        ::waitpid(process_, nullptr, 0);
    }

    bool holds() const { return holds_; }

private:
    [[noreturn]] static void hold(const std::string& file, int ready)
    {
        static int leased = 0;
        leased = ::open(file.c_str(), O_RDWR);
        ::signal(SIGIO, [](int) { ::fcntl(leased, F_SETLEASE, F_UNLCK); });
        if (::fcntl(leased, F_SETLEASE, F_WRLCK) == 0) {
            static_cast<void>(!::write(ready, "", 1));
        }
        ::close(ready);
        for (;;) {
            ::pause();
        }
    }

    pid_t process_ = 0;
    bool holds_ = false;
};

TEST(Lease, isWaitedFor)
{
    const TempDatabase tree(durableBase);
    std::string whole;
    {
        const OpenDatabase db(tree);
        whole = listing(db.id);
        const Leaseholder data(tree.root() + "/Substance1/Property1.dat");
        if (!data.holds()) {
            GTEST_SKIP() << "no leases here";
        }
        EXPECT_EQ(listing(db.id), whole);
        EXPECT_EQ(additions[4].add(db.id, 1), QMDB_OK);
    }
    tree.remove("Substance1/Property2.prh");
    const Leaseholder descriptor(tree.root() + "/Substance1/Property1.prh");
    const Leaseholder table(tree.root() + "/default.lst");
    EXPECT_EQ(reopened(tree), whole);
    EXPECT_FALSE(tree.exists("qmdb.log"));
}

} // namespace
