#pragma once

#include <compare>
#include <cstddef>
#include <set>
#include <string>
#include <string_view>

namespace tool::check {

/// Errors: the library refuses the file, or reads something else than what stands there. Warnings: the
/// library reads it, but hardly as it was meant.
enum class Severity { Error, Warning };

/// A place in the database: a path below its directory and a line, 0 where no line is to blame.
struct Place {
    std::string file;
    std::size_t line = 0;

    auto operator<=>(const Place&) const = default;
};

struct Finding {
    Place place;
    Severity severity {};
    std::string kind; ///< a fixed word for scripts
    std::string what;
    std::string advice;

    auto operator<=>(const Finding&) const = default;
};

/// What a check has found, in the order of files and lines.
class Findings {
public:
    void error(std::string_view kind, const Place& place, std::string_view what, std::string_view advice)
    {
        add(Severity::Error, kind, place, what, advice);
    }
    void warning(std::string_view kind, const Place& place, std::string_view what, std::string_view advice)
    {
        add(Severity::Warning, kind, place, what, advice);
    }

    const std::set<Finding>& all() const noexcept { return findings_; }
    std::size_t count(Severity severity) const;

private:
    void add(Severity severity, std::string_view kind, const Place& place, std::string_view what,
        std::string_view advice)
    {
        findings_.insert({ place, severity, std::string(kind), std::string(what), std::string(advice) });
    }

    std::set<Finding> findings_;
};

} // namespace tool::check
