#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tool::writing {

/// The lines of a descriptor, to be changed and written again. Lines that nobody changes stay as they are;
/// what comes out is UTF-8 with the mark, each line ended by LF.
class DescriptorText {
public:
    DescriptorText() = default;

    /// Reads a file below the database's directory. Throws Failure when the library does not read all of it,
    /// because what it does not read would be lost.
    static DescriptorText read(const std::string& root, const std::string& file);

    /// The last value of a key.
    std::optional<std::string> text(std::string_view key) const;

    /// Gives a key one value. A new key goes before the first that is greater. Throws Failure when the line
    /// could not be read again.
    void set(std::string_view key, std::string_view value);
    /// The same for a table of many lines: a new key goes to the end, in no time.
    void append(const std::string& key, std::string_view value);
    void remove(std::string_view key);
    /// Sets the key, or removes it when the value is empty.
    void setOrRemove(std::string_view key, std::string_view value);

    std::string bytes() const;

private:
    struct Line {
        std::string key;
        std::string value;
        bool hasKey = true;
    };

    std::vector<Line> lines_;
    std::map<std::string, std::size_t> places_; ///< of the keys of all lines, once something is appended
};

} // namespace tool::writing
