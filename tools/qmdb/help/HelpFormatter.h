#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace tool {

/// What --help prints: the parser's lists, and the prose that the manual page has, too.
class HelpFormatter : public CLI::Formatter {
public:
    std::string make_description(const CLI::App* app) const override;
    std::string make_footer(const CLI::App* app) const override;
    /// The usage line tells which positionals may be left out.
    std::string make_positionals(const CLI::App* app) const override;
};

} // namespace tool
