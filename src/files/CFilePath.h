#pragma once

#include <memory>
#include <string>
#include <string_view>

/// The path of a file of the database: a directory, shared with the other files in it, and a name.
class CFilePath {
public:
    CFilePath() = default;
    CFilePath(std::shared_ptr<const std::string> directory, std::string_view name)
        : directory_(std::move(directory))
        , name_(name)
    {
    }

    const std::string& name() const noexcept { return name_; }
    std::string text() const;
    /// The path for the log.
    std::string shown() const;

    /// The directory part of text(). That is not always the directory that the path was made of: a
    /// backslash in the name separates as well.
    std::shared_ptr<const std::string> directoryPart() const;

private:
    std::shared_ptr<const std::string> directory_;
    std::string name_;
};
