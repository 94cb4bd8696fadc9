// A disk that fills up in the middle of a file, at every byte of it.

#include "faults/OwnMounts.h"
#include "faults/Watch.h"
#include "support/OpenDatabase.h"
#include "support/Reliability.h"
#include "support/additionKinds.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

using namespace test;

/// Files cannot grow beyond a size while the object lives.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t size)
    {
        std::signal(SIGXFSZ, SIG_IGN);
        ::getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit limit { size, before_.rlim_max };
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;
    ~FileSizeLimit() { ::setrlimit(RLIMIT_FSIZE, &before_); }

private:
    rlimit before_ {};
};

/// The log as a FIFO, which has no size that could be limited.
class LogPipe {
public:
    explicit LogPipe(const TempDatabase& tree)
        : root_(tree.root())
    {
        tree.make({ "qmdb.log", "", Kind::fifo });
        reader_ = ::open((root_ + "/qmdb.log").c_str(), O_RDONLY | O_NONBLOCK);
    }
    LogPipe(const LogPipe&) = delete;
    LogPipe& operator=(const LogPipe&) = delete;
    ~LogPipe() { ::close(reader_); }

    /// With "$" for the root's path.
    std::string text() const
    {
        std::array<char, 4096> bytes;
        const ssize_t size = ::read(reader_, bytes.data(), bytes.size());
        std::string text(bytes.data(), static_cast<std::size_t>(std::max<ssize_t>(size, 0)));
        const std::size_t at = text.find(root_);
        return at == text.npos ? text : text.replace(at, root_.size(), "$");
    }

private:
    std::string root_;
    int reader_;
};

/// The files that an addition makes, in the order of writing: the data file, if any, and the descriptor.
struct NewFiles {
    explicit NewFiles(const Addition& addition)
    {
        const TempDatabase tree(durableBase);
        const OpenDatabase db(tree);
        addition.add(db.id, 1);
        const std::string changes = tree.changes();
        for (std::size_t at = changes.find("== "); at != changes.npos; at = changes.find("\n== ", at)) {
            at = changes.find(' ', at) + 1;
            const std::string path = changes.substr(at, changes.find('\n', at) - at);
            const bool isData = path.ends_with(".dat") || path.starts_with("linked/");
            (isData ? data : descriptor) = path;
            (isData ? dataSize : descriptorSize) = tree.read(path).size();
        }
    }

    std::string data;
    std::string descriptor;
    std::size_t dataSize = 0;
    std::size_t descriptorSize = 0;
};

class FullDisk : public testing::TestWithParam<Addition> {
protected:
    void cutAt(std::size_t size, const NewFiles& files) const
    {
        const TempDatabase tree(durableBase);
        const OpenDatabase db(tree);
        const LogPipe log(tree);
        EXPECT_EQ(addWithin(size, db.id), QMDB_E_FILE);
        EXPECT_EQ(listing(db.id), listings.before);
        const bool isLink = files.data.starts_with("linked/");
        const std::string changes = tree.changes();
        if (size < files.dataSize) {
            const std::string name = isLink ? "Substance1/Phase2/Property1.dat" : files.data;
            EXPECT_EQ(log.text(), "ERROR: Cannot write parameter data file: $/" + name + "\n");
            EXPECT_EQ(changes, isLink ? "== " + files.data + "\n" : "");
        } else {
            EXPECT_EQ(log.text(), "ERROR: Cannot open file for write: $/" + files.descriptor + "\n");
            EXPECT_EQ(changes.find("ID="), changes.npos) << changes;
            EXPECT_EQ(changes.find(".tmp"), changes.npos) << changes;
        }
        EXPECT_EQ(reopened(tree), listings.before);
        EXPECT_GE(GetParam().add(db.id, 1), QMDB_OK);
        EXPECT_EQ(withoutIds(reopened(tree)), withoutIds(listings.first));
    }

    const Listings listings { GetParam() };

private:
    int addWithin(std::size_t size, long database) const
    {
        const FileSizeLimit limit(size);
        return GetParam().add(database, 1);
    }

    /// IDs that the failure has used up are not given again.
    static std::string withoutIds(std::string text)
    {
        std::erase_if(text, [](char c) { return c >= '0' && c <= '9'; });
        return text;
    }
};

TEST_P(FullDisk, atEveryLength)
{
    const NewFiles files(GetParam());
    ASSERT_GT(files.descriptorSize, 0u);
    const std::size_t longest = std::max(files.dataSize, files.descriptorSize);
    const std::size_t step = isLongRun() ? 1 : longest / 200 + 1;
    for (std::size_t size = 0; size < longest && !HasFailure(); size += step) {
        SCOPED_TRACE(size);
        cutAt(size, files);
    }
    cutAt(longest - 1, files);
}

/// A memory disk of which one kind of supply is short.
class SmallDisk {
public:
    SmallDisk(std::string directory, bool isShortOfInodes)
        : directory_(std::move(directory))
        , isShortOfInodes_(isShortOfInodes)
    {
    }

    /// Leaves so many free blocks or entries.
    void leave(std::size_t free) const
    {
        if (isShortOfInodes_) {
            std::size_t count = 0;
            while (std::ofstream(filler(count))) {
                ++count;
            }
            for (; free > 0 && count > 0; --free) {
                fs::remove(filler(--count));
            }
            return;
        }
        std::ofstream file(filler(0));
        const std::string block(blockSize, 'x');
        while (file.write(block.data(), blockSize).flush()) { }
        file.close();
        fs::resize_file(filler(0), fs::file_size(filler(0)) - free * blockSize);
    }

    void clear() const
    {
        for (std::size_t i = 0; fs::remove(filler(i)); ++i) { }
    }

private:
    static constexpr std::streamsize blockSize = 4096;

    std::string filler(std::size_t number) const { return directory_ + "/" + std::to_string(number); }

    std::string directory_;
    bool isShortOfInodes_;
};

bool mountMemoryDisk(const std::string& directory, const char* options)
{
    return ::mount("none", directory.c_str(), "tmpfs", 0, options) == 0;
}

TEST_P(FullDisk, withFewBlocksOrInodes)
{
    const TempDatabase logs({});
    for (const bool isShortOfInodes : { false, true }) {
        const OwnMounts status = inOwnMounts([&](const std::string& directory) {
            if (!mountMemoryDisk(directory, isShortOfInodes ? "nr_inodes=60" : "size=400k")) {
                return false;
            }
            const SmallDisk disk(directory, isShortOfInodes);
            std::size_t free = 0;
            for (int code = -1; code < QMDB_OK && free < 40 && !HasFailure(); ++free) {
                SCOPED_TRACE(free);
                const TempDatabase tree(durableBase);
                const OpenDatabase db(tree, { .logDir = logs.path() });
                disk.leave(free);
                code = GetParam().add(db.id, 1);
                disk.clear();
                addMissingPhases(db.id);
                EXPECT_EQ(listing(db.id), code < QMDB_OK ? listings.before : listings.first);
                EXPECT_EQ(reopened(tree), listing(db.id));
                EXPECT_EQ(tree.changes().find(".tmp"), std::string::npos);
                EXPECT_EQ(damage(tree), "");
                EXPECT_GE(GetParam().add(db.id, 2), QMDB_OK);
            }
            EXPECT_GT(free, 1u) << "nothing was short";
            EXPECT_LT(free, 40u) << "never enough";
            return true;
        });
        if (status == OwnMounts::notPermitted) {
            GTEST_SKIP() << "disks cannot be mounted here";
        }
        EXPECT_EQ(status, OwnMounts::passed);
    }
}

INSTANTIATE_TEST_SUITE_P(Faults, FullDisk, testing::ValuesIn(additions), additionName);

} // namespace
