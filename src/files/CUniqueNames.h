#pragma once

#include "files/CDirectory.h"
#include "files/CFreeNumbers.h"
#include "format/paths.h"
#include "qm/CQMDirectoryWatch.h"

#include <array>
#include <list>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <sys/types.h>

/// Finds names for new entries: the prefix and extension of a series with the smallest positive number that
/// is free in a directory.
///
/// Entries of any kind block a number, links to nothing do not. Nothing is created, so another writer may
/// take the name meanwhile. To find a name costs one listing of the directory at the first two additions to
/// it; then it is watched, and only changes are looked at. A few directories are, those used last.
class CUniqueNames {
public:
    /// `directory` is open.
    std::string next(const CDirectory& directory, format::Series series);

private:
    /// The taken numbers of all series in one directory.
    using Numbers = std::array<CFreeNumbers, format::seriesCount>;

    struct Place {
        dev_t device;
        ino_t inode;
        int watch = -1;
        bool isWatchable = true;
        bool isListed = false; ///< `numbers` are right, but for changes that are still to be read
        Numbers numbers = {};
        std::set<std::string> unchecked = {}; ///< names that have appeared and may be links
    };

    /// What is known of the directory; null when it has not been added to lately.
    Place* findPlace(dev_t device, ino_t inode);
    void remember(dev_t device, ino_t inode);
    bool isWatched(Place& place, const CDirectory& directory);
    void stopWatching(Place& place) noexcept;
    void readChanges();
    void forgetListings() noexcept;
    void apply(const qm::CQMDirectoryWatch::Change& change);
    bool list(Place& place, const CDirectory& directory);
    static bool hasUncheckedLink(Place& place, const CDirectory& directory);
    void leaveToParentProcess();

    std::list<Place> places_; ///< the last used first
    std::optional<qm::CQMDirectoryWatch> watch_;
    pid_t process_ = 0;
};
