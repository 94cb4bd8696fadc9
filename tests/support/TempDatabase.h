#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace test {

/// What an entry of a tree is; of a link, `bytes` is the target.
enum class Kind { file, link, fifo, socket };

/// A path that ends in "/" is a directory.
struct Entry {
    std::string path;
    std::string bytes;
    Kind kind = Kind::file;
};

using Tree = std::vector<Entry>;

/// The tree with entries added; one under a known path replaces the earlier one.
Tree operator+(Tree tree, const Tree& more);

inline constexpr std::string_view utf8Mark = "\xEF\xBB\xBF";

/// A database tree in a directory of its own, which goes with the object.
class TempDatabase {
public:
    explicit TempDatabase(const Tree& tree);
    ~TempDatabase();
    TempDatabase(const TempDatabase&) = delete;
    TempDatabase& operator=(const TempDatabase&) = delete;

    const std::string& root() const { return directory; }
    std::wstring path() const { return { directory.begin(), directory.end() }; }

    void make(const Entry& entry) const;
    void remove(std::string_view file) const;
    bool exists(std::string_view file) const;
    /// The bytes of a file, empty when there is none.
    std::string read(std::string_view file) const;

    /// The log in the root, with "$" for the root's path.
    std::string log() const;
    void clearLog() const { remove("qmdb.log"); }

    /// All entries but the log that are new or differ from the tree at the start, with their bytes:
    /// "== path\nbytes", the UTF-8 mark shown as "<mark>"; of directories only the empty ones.
    std::string changes() const;

private:
    std::map<std::string, std::string> snapshot() const;

    std::string directory;
    std::map<std::string, std::string> atStart;
};

} // namespace test
