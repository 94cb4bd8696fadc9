#pragma once

#include "check/lines.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace tool::check {

/// A descriptor file, read line by line; what is wrong with its lines has been reported.
class Descriptor {
public:
    struct Value {
        std::string text;
        std::size_t line = 0;
    };

    Descriptor() = default;
    Descriptor(Context& context, std::string file);

    const std::string& file() const noexcept { return file_; }
    const std::map<std::string, Value, std::less<>>& values() const noexcept { return values_; }

    bool has(std::string_view key) const { return values_.contains(key); }
    std::string text(std::string_view key) const;
    /// As the library reads a number: 0 when there is none.
    long number(std::string_view key) const;
    bool flag(std::string_view key) const { return text(key) == "1"; }

    /// The key's line, or the file when the key is not there.
    Place place(std::string_view key) const;

    /// True when the file could be read.
    bool isReadable() const noexcept { return readable_; }

private:
    void addLine(Context& context, const RawLine& line);
    std::string decode(Context& context, const RawLine& line);

    std::string file_;
    std::map<std::string, Value, std::less<>> values_;
    bool readable_ = false;
    bool utf8_ = false;
    bool unmarkedReported_ = false;
};

} // namespace tool::check
