#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tool {

/// A line as it is typed into bash, up to the cursor, with its quotes and backslashes.
///
/// Completion replaces only the end of the last word: what stands behind an open quote, or else behind the
/// last character that separates words for readline, as ":" does.
class TypedLine {
public:
    /// `breaks` are the separating characters.
    TypedLine(std::string_view line, std::string_view breaks);

    /// Without quotes; the last one, which may be empty, is the one to complete.
    const std::vector<std::string>& words() const noexcept { return words_; }

    /// What replaces the end of the last word so that it becomes `word`, quoted as the last word is.
    std::string replacement(std::string_view word) const;

private:
    std::size_t takeQuoted(std::string_view line, std::size_t begin);

    std::vector<std::string> words_ { "" };
    std::size_t kept_ = 0; ///< how much of the last word stays
    char quote_ = '\0'; ///< that is open at the end
};

} // namespace tool
