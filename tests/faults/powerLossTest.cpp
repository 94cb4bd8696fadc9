// The power fails at every system call of two additions, on a disk of its own: what has been acknowledged is
// there when the machine starts again, and nothing stands half.

#include "faults/OwnMounts.h"
#include "faults/Watch.h"
#include "support/OpenDatabase.h"
#include "support/Reliability.h"
#include "support/additionKinds.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <linux/loop.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using namespace test;

/// A disk with an ext4 file system, in memory of the process, with which it vanishes.
class Disk {
public:
    explicit Disk(std::string directory)
        : directory_(std::move(directory))
    {
        const int image = ::memfd_create("disk", MFD_CLOEXEC);
        const std::string path = "/proc/" + std::to_string(::getpid()) + "/fd/" + std::to_string(image);
        const std::string format = "PATH=$PATH:/usr/sbin:/sbin mkfs.ext4 -q -F " + path + " >/dev/null 2>&1";
        constexpr off_t size = 16 << 20;
        isThere_
            = ::ftruncate(image, size) == 0 && std::system(format.c_str()) == 0 && attach(image) && start();
        ::close(image);
    }
    Disk(const Disk&) = delete;
    Disk& operator=(const Disk&) = delete;
    ~Disk()
    {
        ::close(root_);
        ::umount(directory_.c_str());
        ::close(device_);
    }

    bool isThere() const { return isThere_; }

    void writeOut() const { ::syncfs(root_); }

    /// Nothing reaches the disk any more; all calls fail.
    void cutPower() const
    {
        constexpr unsigned long shutDown = _IOR('X', 125, __u32);
        __u32 withoutWritingOut = 2;
        EXPECT_EQ(::ioctl(root_, shutDown, &withoutWritingOut), 0);
    }

    void restart()
    {
        ::close(root_);
        ASSERT_EQ(::umount(directory_.c_str()), 0) << errno;
        ASSERT_TRUE(start()) << errno;
    }

private:
    bool attach(int file)
    {
        const int control = ::open("/dev/loop-control", O_RDWR | O_CLOEXEC);
        loop_config config {};
        config.fd = static_cast<__u32>(file);
        config.info.lo_flags = LO_FLAGS_AUTOCLEAR;
        for (int tries = 0; device_ < 0 && tries < 20; ++tries) { // another program may be quicker
            name_ = "/dev/loop" + std::to_string(::ioctl(control, LOOP_CTL_GET_FREE));
            device_ = ::open(name_.c_str(), O_RDWR | O_CLOEXEC);
            if (device_ >= 0 && ::ioctl(device_, LOOP_CONFIGURE, &config) != 0) {
                ::close(device_);
                device_ = -1;
            }
        }
        ::close(control);
        return device_ >= 0;
    }

    /// The journal is not written out for its age while a test runs.
    bool start()
    {
        const bool isMounted
            = ::mount(name_.c_str(), directory_.c_str(), "ext4", MS_NOATIME, "commit=300") == 0;
        root_ = ::open(directory_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        return isMounted;
    }

    std::string directory_;
    std::string name_;
    int device_ = -1;
    int root_ = -1;
    bool isThere_;
};

/// Which flushes the disk gets to see.
enum class Flushes { all, ofFiles, ofDirectories, none };

/// As a file system that has no such operation.
int answerFlush(const SystemCall& call, Flushes flushes)
{
    struct stat status { };
    if (call.call != Call::sync || flushes == Flushes::all || ::fstat(call.descriptor, &status) != 0) {
        return 0;
    }
    const Flushes kind = S_ISDIR(status.st_mode) ? Flushes::ofDirectories : Flushes::ofFiles;
    return kind == flushes ? 0 : EINVAL;
}

class PowerLoss : public testing::TestWithParam<Addition> {
protected:
    struct Outcome {
        int acknowledged = 0;
        bool cameEarly = false; ///< the additions were still at work
        std::string found;
        std::string damaged;
    };

    /// Adds twice; the power fails before a system call, counted from 1, or at last behind all.
    Outcome cut(Disk& disk, std::size_t call, Flushes flushes) const
    {
        Outcome outcome;
        const TempDatabase tree(durableBase);
        disk.writeOut();
        {
            const OpenDatabase db(tree, { .logInfo = true });
            std::size_t calls = 0;
            Watch watch([&](const SystemCall& next) {
                if (++calls == call) {
                    disk.cutPower();
                }
                return answerFlush(next, flushes);
            });
            for (const int number : { 1, 2 }) {
                outcome.acknowledged += GetParam().add(db.id, number) >= QMDB_OK ? 1 : 0;
            }
            outcome.cameEarly = calls >= call;
        }
        if (!outcome.cameEarly) {
            disk.cutPower();
        }
        disk.restart();
        outcome.found = reopened(tree);
        outcome.damaged = damage(tree);
        return outcome;
    }

    /// Runs `body` on a disk of its own, where that can be had.
    template <class Body>
    static void onDisk(Body&& body)
    {
        const OwnMounts outcome = inOwnMounts([&](const std::string& directory) {
            Disk disk(directory);
            if (disk.isThere()) {
                body(disk);
            }
            return disk.isThere();
        });
        if (outcome == OwnMounts::notPermitted) {
            GTEST_SKIP() << "there is no ext4, or disks cannot be mounted here";
        }
        EXPECT_EQ(outcome, OwnMounts::passed);
    }

    const Listings listings { GetParam() };
    const std::string states[4] = { listings.before, listings.first, listings.both, "" };
};

TEST_P(PowerLoss, takesNothingAcknowledged)
{
    onDisk([this](Disk& disk) {
        Reliability cuts("power loss");
        const std::size_t step = isLongRun() ? 1 : 2;
        bool cameEarly = true;
        for (std::size_t call = 1; cameEarly && !HasFailure(); call += step, ++cuts.cases) {
            SCOPED_TRACE("call " + std::to_string(call));
            const Outcome outcome = cut(disk, call, Flushes::all);
            cameEarly = outcome.cameEarly;
            const auto acknowledged = static_cast<std::size_t>(outcome.acknowledged);
            const bool isNextThere = cameEarly && outcome.found == states[acknowledged + 1];
            EXPECT_EQ(outcome.found, states[acknowledged + (isNextThere ? 1 : 0)]);
            EXPECT_TRUE(cameEarly || acknowledged == 2);
            EXPECT_EQ(outcome.damaged, "");
        }
        EXPECT_GT(cuts.cases, 10u);
    });
}

// Else the test above would show nothing.
TEST_P(PowerLoss, takesWhatIsNotFlushed)
{
    onDisk([this](Disk& disk) {
        for (const Flushes flushes : { Flushes::ofFiles, Flushes::ofDirectories, Flushes::none }) {
            const Outcome outcome = cut(disk, -1UL, flushes);
            EXPECT_EQ(outcome.acknowledged, 2);
            EXPECT_NE(outcome.found, listings.both) << static_cast<int>(flushes);
        }
    });
}

INSTANTIATE_TEST_SUITE_P(Faults, PowerLoss, testing::ValuesIn(additions), additionName);

} // namespace
