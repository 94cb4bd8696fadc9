#pragma once

#include "check/lines.h"

#include "format/descriptor.h"
#include "format/keys.h"

#include <map>
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

    Descriptor(Context& context, std::string file);

    const std::string& file() const noexcept { return file_; }
    const std::map<std::string, Value, std::less<>>& values() const noexcept { return values_; }

    bool has(std::string_view key) const { return values_.contains(key); }
    bool has(format::Key key) const { return has(textOf(key)); }
    std::string text(std::string_view key) const;
    std::string text(format::Key key) const { return text(textOf(key)); }
    /// As the library reads a number: 0 when there is none.
    long number(format::Key key) const;
    bool flag(format::Key key) const { return text(key) == format::trueFlag; }

    /// The key's line, or the file when the key is not there.
    Place place(std::string_view key) const;
    Place place(format::Key key) const { return place(textOf(key)); }

    /// True when the file could be read.
    bool isReadable() const noexcept { return readable_; }

private:
    void addLine(Context& context, const RawLine& line, format::CDescriptorParser& parser);
    void addEntry(Context& context, const Place& place, const format::CDescriptorParser& parser);
    void checkEncoding(Context& context, const RawLine& line, bool utf8);

    std::string file_;
    std::map<std::string, Value, std::less<>> values_;
    bool readable_ = false;
    bool unmarkedReported_ = false;
};

} // namespace tool::check
