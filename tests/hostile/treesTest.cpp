// Trees that nobody means well with: whatever stands in a place, the library answers soon, does no harm, and
// stays in the tree but where a link leads out of it.

#include "support/trees.h"
#include "api/additions.h"
#include "faults/Watch.h"
#include "support/OpenDatabase.h"
#include "support/Reliability.h"
#include "support/ScopedLocale.h"

#include <gtest/gtest.h>

#include <climits>
#include <ctime>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <set>
#include <sys/fsuid.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

using namespace test;

/// The CPU time that a call takes, in seconds: other programs do not count.
template <class Call>
double secondsOf(Call&& call)
{
    const std::clock_t start = std::clock();
    call();
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

constexpr double mostSeconds = 1;

/// The paths outside a tree that the library turns to, while the object lives.
class Escapes {
public:
    explicit Escapes(const std::string& root)
        : root_(root)
        , watch_([this](const SystemCall& call) { return note(call), 0; })
    {
    }

    std::set<std::string> found;

private:
    void note(const SystemCall& call)
    {
        if (*call.path == '\0') {
            return;
        }
        const fs::path base = call.descriptor == AT_FDCWD
            ? fs::current_path()
            : fs::read_symlink("/proc/self/fd/" + std::to_string(call.descriptor));
        const fs::path path = (base / call.path).lexically_normal();
        const bool isFollowed = call.call == Call::open || call.call == Call::status;
        std::error_code isLoop;
        const fs::path real = isFollowed ? fs::weakly_canonical(path, isLoop)
                                         : fs::weakly_canonical(path.parent_path(), isLoop) / path.filename();
        if (!isLoop && !real.string().starts_with(root_)) {
            found.insert(real);
        }
    }

    std::string root_;
    Watch watch_;
};

/// Takes root's right to open everything away while it lives.
class PlainUser {
public:
    PlainUser() { ::setfsuid(65534); }
    PlainUser(const PlainUser&) = delete;
    PlainUser& operator=(const PlainUser&) = delete;
    ~PlainUser() { ::setfsuid(::geteuid()); }
};

struct Hostile {
    const char* name;
    /// Puts it in a place where nothing stands; false where the system does not permit it. `outside` is a
    /// directory beside the tree.
    bool (*make)(const fs::path& place, const fs::path& outside);
    int openCode; ///< in place of a descriptor
    const char* value; ///< read in place of a data file
};

template <mode_t type, unsigned major = 0, unsigned minor = 0>
bool makeNode(const fs::path& place, const fs::path&)
{
    return ::mknod(place.c_str(), type | 0666, makedev(major, minor)) == 0;
}

bool linkTo(const fs::path& target, const fs::path& place)
{
    fs::create_symlink(target, place);
    return true;
}

bool makeUnreadable(const fs::path& place, const fs::path&)
{
    std::ofstream(place) << "1\n";
    return ::chmod(place.c_str(), 0) == 0;
}

bool makeSparse(const fs::path& place, const fs::path&)
{
    std::ofstream(place) << "1 2";
    return ::truncate(place.c_str(), off_t { 8 } << 40) == 0;
}

const Hostile hostile[] = {
    { "FIFO", makeNode<S_IFIFO>, QMDB_E_REQUIRED_KEY, "error -11" },
    { "socket, which counts as a directory", makeNode<S_IFSOCK>, QMDB_OK, "error -6" },
    { "endless device", makeNode<S_IFCHR, 1, 5>, QMDB_E_REQUIRED_KEY, "error -7" },
    { "block device, which counts as a directory", makeNode<S_IFBLK, 1000, 1>, QMDB_OK, "error -6" },
    { "directory", [](const fs::path& place, const fs::path&) { return fs::create_directory(place); },
        QMDB_OK, "error -7" },
    { "unreadable directory",
        [](const fs::path& place, const fs::path&) { return ::mkdir(place.c_str(), 0) == 0; }, QMDB_OK,
        "error -6" },
    { "unreadable file", makeUnreadable, QMDB_E_FILE, "error -6" },
    { "link to nothing",
        [](const fs::path& place, const fs::path&) { return linkTo("nowhere/at/all", place); }, QMDB_E_FILE,
        "error -3" },
    { "link to itself",
        [](const fs::path& place, const fs::path&) { return linkTo(place.filename(), place); }, QMDB_E_FILE,
        "error -3" },
    { "link out of the tree",
        [](const fs::path& place, const fs::path& outside) { return linkTo(outside / "file", place); },
        QMDB_E_REQUIRED_KEY, "7" },
    { "link to its own directory", [](const fs::path& place, const fs::path&) { return linkTo(".", place); },
        QMDB_OK, "error -7" },
    { "8 TB sparse file", makeSparse, QMDB_E_REQUIRED_KEY, "error -7" },
};

enum class Role { descriptor, data, other };

struct Place {
    const char* path;
    Role role;
    Owner owner = { 4 };
    long parameter = 9;
};

const Place places[] = {
    { "7.prd", Role::descriptor },
    { "W/w.mtd", Role::descriptor },
    { "W/L/l.phd", Role::descriptor },
    { "W/M/m.pcd", Role::descriptor },
    { "W/own.prh", Role::descriptor },
    { "W/L/d.prh", Role::descriptor },
    { "W/own.dat", Role::data },
    { "default.lst", Role::other },
    { "qmdb.log", Role::other },
    { "W", Role::other },
    { "W/L", Role::other },
    { "Substance1", Role::other },
    { "W/Phase1", Role::other },
    { "W/Property1.dat", Role::other },
};

class HostileTree {
public:
    HostileTree(const Hostile& kind, const Place& place)
        : kind_(kind)
        , place_(place)
    {
        const fs::path path = tree_.root() + "/" + place.path;
        fs::remove_all(path);
        for (const TempDatabase* open : { &tree_, &outside_ }) {
            openToAll(open->root());
        }
        isThere_ = kind.make(path, outside_.root());
    }

    HostileTree(const HostileTree&) = delete;
    HostileTree& operator=(const HostileTree&) = delete;
    ~HostileTree()
    {
        // So that it can be removed. A link is not followed: it may lead anywhere.
        const std::string path = tree_.root() + "/" + place_.path;
        if (!fs::is_symlink(path)) {
            ::chmod(path.c_str(), 0700);
        }
    }

    bool isThere() const { return isThere_; }

    void judge()
    {
        Escapes escapes(tree_.root());
        const PlainUser user;
        EXPECT_LT(secondsOf([this] { use(); }), mostSeconds);
        const bool leadsOut = std::string_view(kind_.name).starts_with("link");
        EXPECT_TRUE(leadsOut || escapes.found.empty()) << *escapes.found.begin();
        const bool isWrittenThrough = std::string_view(place_.path) == "W/Property1.dat";
        EXPECT_TRUE(isWrittenThrough || outside_.changes().empty()) << outside_.changes();
    }

private:
    static void openToAll(const fs::path& root)
    {
        const auto open = [](const fs::path& path) {
            fs::permissions(path, fs::is_directory(path) ? fs::perms(0777) : fs::perms(0666));
        };
        open(root);
        std::ranges::for_each(fs::recursive_directory_iterator(root), open);
    }

    void use()
    {
        std::string shown;
        {
            const OpenDatabase db(tree_, { .logInfo = true });
            EXPECT_EQ(db.code, place_.role == Role::descriptor ? kind_.openCode : QMDB_OK);
            if (db.code != QMDB_OK) {
                return;
            }
            if (place_.role == Role::data) {
                EXPECT_EQ(valueText(db.id, place_.owner, place_.parameter), kind_.value);
            }
            add(db.id);
            shown = listing(db.id);
        }
        const OpenDatabase again(tree_, {});
        EXPECT_EQ(listing(again.id), shown);
    }

    /// Adds one of each; what is refused is so because the entry stands there, or because its owner is gone.
    static void add(long database)
    {
        IDbDataConst value;
        value.value = 7;
        const std::wstring name(L"New");
        const int codes[] = { addMatter(database, { name }), addPhase(database, 4, name, 1),
            addPhaseChange(database, 4, name, 1, 2), addParam(database, { 4 }, { 7 }, &value) };
        for (const int code : codes) {
            EXPECT_TRUE(code >= QMDB_OK || code == QMDB_E_FILE || code == QMDB_E_NOT_FOUND
                || code == QMDB_E_EMPTY || code == QMDB_E_UNKNOWN_PARAMETER)
                << code;
        }
        // A substance without phases would be gone after opening anew.
        if (codes[0] >= QMDB_OK) {
            EXPECT_GE(addPhase(database, codes[0], name, 1), QMDB_OK);
        }
    }

    const Hostile& kind_;
    const Place& place_;
    const TempDatabase tree_ { water };
    const TempDatabase outside_ { { { "file", "7\n" } } };
    bool isThere_;
};

TEST(HostileTrees, anythingInEveryPlace)
{
    Reliability trees("hostile trees");
    for (const Hostile& kind : hostile) {
        for (const Place& place : places) {
            SCOPED_TRACE(std::string(kind.name) + " at " + place.path);
            HostileTree tree(kind, place);
            if (tree.isThere()) {
                tree.judge();
                ++trees.cases;
            }
        }
    }
}

/// Opens a tree and adds to it within the time, from a root that may be written otherwise.
void expectUsable(const TempDatabase& tree, const std::wstring& root)
{
    std::string shown;
    EXPECT_LT(secondsOf([&] {
        const OpenDatabase db(root, {});
        EXPECT_EQ(listing(db.id), waterListing);
        EXPECT_GE(addPhase(db.id, 4, L"New", 1), QMDB_OK);
        IDbDataConst value;
        EXPECT_EQ(addParam(db.id, { 4 }, { 7 }, &value), QMDB_OK);
        shown = listing(db.id);
        EXPECT_NE(shown, waterListing);
    }),
        mostSeconds);
    EXPECT_EQ(listing(OpenDatabase(tree).id), shown);
}

TEST(HostileTrees, longPathsOfTheRoot)
{
    Reliability roots("hostile trees");
    for (std::size_t length = PATH_MAX - 80; length < PATH_MAX + 20; length += isLongRun() ? 1 : 3) {
        SCOPED_TRACE(length);
        const TempDatabase tree(water);
        std::wstring root = tree.path();
        while (root.size() + 2 <= length) {
            root += L"/.";
        }
        root.append(length - root.size(), L'/');
        expectUsable(tree, root);
        ++roots.cases;
    }
}

TEST(HostileTrees, thousandLevels)
{
    std::string levels;
    for (int i = 0; i < 1000; ++i) {
        levels += "d/";
    }
    const TempDatabase tree(
        water + Tree { { levels, "" }, { "W/" + levels + "x.phd", "" }, { "W/L/" + levels + "x.prh", "" } });
    expectUsable(tree, tree.path());
    for (const Entry& entry : water) {
        tree.make({ levels + entry.path, entry.bytes });
    }
    const OpenDatabase deep(tree.path() + L"/" + std::wstring(levels.begin(), levels.end()), {});
    EXPECT_EQ(listing(deep.id), waterListing);
    EXPECT_GE(addPhase(deep.id, 4, L"New", 1), QMDB_OK);
}

// In the locale "C" such a name is no text: it reads as the empty one, and leads to the directory that it is
// in.
TEST(HostileTrees, longNamesAndNamesThatAreNoText)
{
    const std::string longest(NAME_MAX, 'x');
    const auto longName
        = [&](std::string_view ending) { return longest.substr(ending.size()).append(ending); };
    const Tree base = water
        + Tree { { longest + "/" + longName(".mtd"), bareIron[0].bytes },
              { longest + "/" + longest + "/" + longName(".phd"), bareIron[1].bytes },
              { longest + "/" + longest + "/" + longName(".prh"), "ID=7\nVector=0\nType=1\nData=" + longest },
              { longest + "/" + longest + "/" + longest, "7\n" } };
    const std::string shown
        = std::string(waterListing) + bareIronListing + "    param 7 type 1 scalar 'Density' 'kg/m3' = 7\n";
    const char* const odd[] = { "\xFF", "\xFF.prd", "W/\xC3.mtd", "W/L/\xE4.phd", "W/M/\xF0.prh", "\x80/",
        "W/\x80/x", "\xFF/\xFF/", "\xFF/\xFF.mtd/", "a\nb.mtd", "\x01\\..\\x.mtd" };
    for (const char* const locale : { "C", "C.UTF-8" }) {
        const ScopedLocale scoped(locale);
        for (const char* const name : odd) {
            SCOPED_TRACE(std::string(locale) + ": " + name);
            const TempDatabase tree(base + Tree { { name, "" } });
            Escapes escapes(tree.root());
            EXPECT_LT(secondsOf([&] { EXPECT_EQ(listing(OpenDatabase(tree).id), shown) << tree.log(); }),
                mostSeconds);
            EXPECT_TRUE(escapes.found.empty()) << *escapes.found.begin();
        }
    }
}

TEST(HostileTrees, hundredThousandEntries)
{
    constexpr std::pair<const char*, const char*> places[]
        = { { "", "Substance" }, { "W/", "Phase" }, { "W/L/", "Property" } };
    const TempDatabase tree(water);
    const std::string target = tree.root() + "/target";
    std::ofstream(target) << "1\n";
    for (const auto& [directory, name] : places) {
        for (int i = 1; i <= 100000; ++i) {
            const std::string entry = tree.root() + "/" + directory + name + std::to_string(i);
            if (::link(target.c_str(), entry.c_str()) != 0) { // as many as the file system allows
                fs::create_symlink(target, entry);
            }
        }
    }
    double listingTime = 0;
    for (const auto& place : places) {
        listingTime += secondsOf([&] {
            for (const auto& entry : fs::directory_iterator(tree.root() + "/" + place.first)) {
                static_cast<void>(entry.exists());
            }
        });
    }
    EXPECT_LT(secondsOf([&] { EXPECT_EQ(listing(OpenDatabase(tree).id), waterListing); }),
        listingTime + mostSeconds);
    const OpenDatabase db(tree);
    EXPECT_LT(secondsOf([&] {
        IDbDataConst value;
        EXPECT_EQ(addParam(db.id, { 4 }, { 7 }, &value), QMDB_OK);
        EXPECT_GE(addPhase(db.id, 4, L"New", 1), QMDB_OK);
    }),
        2 * listingTime + mostSeconds);
    EXPECT_TRUE(tree.exists("W/Phase100001/Phase100001.phd"));
}

TEST(HostileTrees, deletedWhileOpen)
{
    const TempDatabase tree(water);
    const OpenDatabase db(tree);
    for (int i = 0; i < 2; ++i) { // before the second round the tree's watched directories are gone
        IDbDataConst value;
        EXPECT_GE(addPhase(db.id, 4, std::to_wstring(i), 1), QMDB_OK);
        fs::rename(tree.root(), tree.root() + "-moved");
        EXPECT_EQ(valueText(db.id, { 4 }, 9), "error -3");
        EXPECT_EQ(addMatter(db.id, { L"New" }), QMDB_E_FILE);
        EXPECT_EQ(addPhase(db.id, 4, L"New", 1), QMDB_E_FILE);
        EXPECT_EQ(addPhaseChange(db.id, 4, L"New", 1, 2), QMDB_E_FILE);
        EXPECT_EQ(addParam(db.id, { 4 }, { 7 }, &value), QMDB_E_FILE);
        EXPECT_FALSE(fs::exists(tree.root()));
        fs::rename(tree.root() + "-moved", tree.root());
    }
    EXPECT_EQ(listing(OpenDatabase(tree).id), listing(db.id));
    fs::remove_all(tree.root());
    EXPECT_EQ(valueText(db.id, { 4 }, 9), "error -3");
    EXPECT_EQ(addPhase(db.id, 4, L"New", 1), QMDB_E_FILE);
}

// The only name in a file that leads anywhere is that of a data file.
TEST(HostileTrees, dataFilesOutside)
{
    const TempDatabase outside(Tree { { "secret", "7\n" } });
    const std::string name = fs::path(outside.root()).filename().string();
    const TempDatabase tree(water
        + Tree { { "W/own.prh", "ID=9\nVector=0\nType=1\nData=../../" + name + "/secret\n" },
            { "W/L/d.prh", "ID=7\nVector=0\nType=1\nData=/etc/passwd\n" } });
    const OpenDatabase db(tree);
    Escapes escapes(tree.root());
    EXPECT_EQ(valueText(db.id, { 4 }, 9), "7");
    EXPECT_EQ(escapes.found, std::set { outside.root() + "/secret" });
    EXPECT_EQ(valueText(db.id, { 4, 2 }, 7), "error -3") << "an absolute path is none";
}

} // namespace
