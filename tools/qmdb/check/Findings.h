#pragma once

#include <cstddef>
#include <functional>
#include <initializer_list>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

namespace tool::check {

/// Errors: the library refuses the file, or reads something else than what stands there. Warnings: the
/// library reads it, but hardly as it was meant.
enum class Severity { Error, Warning };

/// A place in the database: a path below its directory and a line.
struct Place {
    static constexpr std::size_t wholeFile = 0;
    static constexpr std::size_t endOfFile = static_cast<std::size_t>(-1); ///< behind all of its lines

    std::string file;
    std::size_t line = wholeFile;
    /// A directory behind all of which the place comes, because what is in there may be the cause.
    std::optional<std::string> after {};

    bool hasLine() const noexcept { return line != wholeFile && line != endOfFile; }
    Place behind(const std::string& directory) const { return { file, line, directory }; }
};

struct Finding {
    Place place;
    Severity severity {};
    std::string kind; ///< a fixed word for scripts
    std::string what;
    std::string advice;

    bool operator<(const Finding& other) const noexcept { return parts() < other.parts(); }

private:
    std::tuple<const std::string&, const std::size_t&, const Severity&, const std::string&,
        const std::string&>
    parts() const noexcept
    {
        return std::tie(place.file, place.line, severity, kind, what);
    }
};

/// What a check has found, each finding once.
class Findings {
public:
    Findings() = default;
    Findings(Findings&&) = default; // what found_ refers to stays where it is
    Findings& operator=(Findings&&) = default;

    void error(std::string_view kind, const Place& place, std::string_view what, std::string_view advice)
    {
        add(Severity::Error, kind, place, what, advice);
    }
    void warning(std::string_view kind, const Place& place, std::string_view what, std::string_view advice)
    {
        add(Severity::Warning, kind, place, what, advice);
    }

    void add(const Findings& others);

    /// In the order of the tree, causes before what follows from them: the files of a directory before
    /// its directories, descriptors before heads before data, then by line, then as they were found.
    std::vector<std::reference_wrapper<const Finding>> all() const;
    bool isEmpty() const noexcept { return found_.empty(); }
    std::size_t count(Severity severity) const;
    bool hasAny(std::initializer_list<std::string_view> kinds) const;

private:
    void add(Severity severity, std::string_view kind, const Place& place, std::string_view what,
        std::string_view advice);
    void add(Finding finding);

    std::set<Finding> known_;
    std::vector<std::reference_wrapper<const Finding>> found_;
};

} // namespace tool::check
