#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace tool::writing {

/// Changes to the files of a database, to be made one after the other: each is on the disk before the next
/// begins, and each happens whole or not at all. Names are below the database's directory, in UTF-8.
class Changes {
public:
    void makeFile(std::string file, std::string bytes);
    void replaceFile(std::string file, std::string bytes);
    void removeFile(std::string file);
    void makeDirectory(std::string directory);
    /// With all that is in it; of a link only the link.
    void removeDirectory(std::string directory);

    void append(const Changes& more);

    std::size_t size() const noexcept { return steps_.size(); }
    bool isEmpty() const noexcept { return steps_.empty(); }

    /// What would happen, one line a step, with the lines of descriptors that change.
    std::vector<std::string> preview(const std::string& root) const;

    /// Makes the changes in a database that others may be reading. Throws Failure.
    void apply(const std::string& root) const;
    /// Makes new files and replaced ones in a copy that nobody sees yet; nothing is flushed.
    void applyUnseen(const std::string& root, const std::function<void()>& checkpoint) const;

private:
    enum class Action { MakeFile, ReplaceFile, RemoveFile, MakeDirectory, RemoveDirectory };
    struct Step {
        Action action;
        std::string name;
        std::string bytes;
    };

    void applyStep(const Step& step, const std::string& root) const;
    static std::vector<std::string> previewLines(const Step& step, const std::string& root);

    std::vector<Step> steps_;
};

/// Removes what a removal left that was interrupted. The database's lock is held.
void removeRests(const std::string& root);

/// Throws Failure for a file that stands elsewhere too, or elsewhere only: it, or a directory on the way to
/// it, is a link.
void requireOwnFile(const std::string& directory, const std::string& file);

} // namespace tool::writing
