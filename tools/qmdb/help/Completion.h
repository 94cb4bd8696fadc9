#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace tool {

struct Candidate {
    std::string text;
    std::string description {}; ///< may be empty

    bool operator==(const Candidate& other) const { return text == other.text; }
};

/// What may stand as a word of a command line.
struct Completion {
    enum class Kind { Words, WordBegins, Files, Directories };

    Kind kind = Kind::Words;
    std::vector<Candidate> candidates {}; ///< of words; files and directories are left to the shell
};

/// The word that the last of `words` may become; the words before it are those behind the command's name.
Completion complete(const CLI::App& app, const std::vector<std::string>& words);

/// Prints what a shell's script asks for: "-- WORDS..." or "--line TEXT --breaks CHARACTERS". Nothing that
/// goes wrong is told: it must not disturb the line that is being written.
int runComplete(const CLI::App& app, const std::vector<std::string>& arguments);

} // namespace tool
