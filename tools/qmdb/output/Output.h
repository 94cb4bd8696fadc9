#pragma once

#include "output/OutputFile.h"

#include <cstdio>
#include <fmt/color.h>
#include <fmt/format.h>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>

namespace tool {

/// Text to standard output or to a file. A reader that is gone ends the command quietly.
class Output {
public:
    /// Standard output when `file` is empty.
    explicit Output(const std::string& file = {});
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;
    ~Output();

    void write(std::string_view text);

    template <class... Arguments>
    void print(fmt::format_string<Arguments...> format, Arguments&&... arguments)
    {
        fmt::format_to(std::back_inserter(pending_), format, std::forward<Arguments>(arguments)...);
        write({});
    }

    /// The text in a style where that is wanted: on a terminal, and NO_COLOR is not set.
    std::string styled(const fmt::text_style& style, std::string_view text) const;

    bool isColoured() const noexcept { return coloured_; }

    /// Writes what is left, and lets a file appear. To be called at the end: the destructor drops both.
    void finish();

private:
    void flush();

    std::unique_ptr<OutputFile> target_; ///< null for standard output
    std::string name_;
    std::FILE* stream_;
    bool coloured_;
    std::string pending_;
};

} // namespace tool
