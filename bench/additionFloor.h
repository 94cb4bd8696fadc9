#pragma once

#include <string>
#include <vector>

namespace bench {

/// What one addition leaves in the tree.
struct Addition {
    struct File {
        std::string path;
        std::string bytes;
    };
    std::string parent;
    std::string directory; ///< a new one in the parent; empty when the files stand in the parent
    std::vector<File> files;
};

/// Calls of an addition beyond the least: mkdir, and for each file open, write and close.
enum class Extra {
    none,
    flushes, ///< files and the directories that have a new entry, as the library does
    listing ///< the parent listed once, which any search for a free number needs
};

/// Leaves the files of an addition with the least system calls.
void make(const Addition& addition, Extra extra);

void remove(const Addition& addition);

} // namespace bench
