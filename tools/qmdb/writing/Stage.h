#pragma once

#include <functional>
#include <string>

namespace tool::writing {

/// A directory beside a database, in which the database as it shall be is made unseen, to take its place in
/// one step.
class Stage {
public:
    /// `target` need not be there yet. Throws Failure when nothing can be made beside it, and for what cannot
    /// be exchanged: a mount point, a link, a directory that may not be written.
    explicit Stage(const std::string& target);
    Stage(const Stage&) = delete;
    Stage& operator=(const Stage&) = delete;
    /// Removes what it holds: the new state, or the old one when the new one has taken its place.
    ~Stage();

    const std::string& directory() const noexcept { return directory_; }

    /// Fills it with all that the target holds: directories anew, files as further names of the same.
    void copyTarget(const std::function<void()>& checkpoint);

    /// Flushes it and lets it take the target's place in one step.
    void moveIntoPlace();

    /// Removes what stages of the target have left whose program was killed.
    static void removeRests(const std::string& target);

private:
    std::string target_; ///< in the locale's encoding, absolute
    bool exists_;
    std::string directory_; ///< in UTF-8
    std::string path_; ///< in the locale's encoding
    int lock_ = -1;
};

} // namespace tool::writing
