#pragma once

#include "format/innerText.h"
#include "format/vocabulary.h"

#include <optional>
#include <string>
#include <string_view>

/// The lines of descriptors: encoding, and the cut at "=". Nothing is trimmed, there are no comments, and
/// nothing is escaped.
namespace format {

/// Decodes the lines of one file.
class CLineDecoder {
public:
    /// `utf8`: the file is UTF-8; else it is in the locale's encoding.
    explicit CLineDecoder(bool utf8);

    /// The text of a line up to its first NUL, without one CR at the end.
    ///
    /// A line that is not UTF-8, though the file should be, is in the locale's encoding; a line that the
    /// locale cannot convert is empty. The result views `bytes` or the object, until the next call.
    std::string_view decode(std::string_view bytes)
    {
        std::string_view line = plainIsText_ && text::isPlain(bytes) ? bytes : convert(bytes);
        line.remove_suffix(line.ends_with('\r') ? 1 : 0);
        return line;
    }

private:
    std::string_view convert(std::string_view bytes);

    bool utf8_;
    bool plainIsText_; ///< ASCII without a NUL decodes to itself
    std::string decoded_;
};

/// Parses the lines of one descriptor, in their order.
class CDescriptorParser {
public:
    enum class Result {
        Entry, ///< `key` and `value` are set
        Blank,
        NoKey, ///< the line has no "="; it stands in `value`
    };

    /// Parses the next line. key() and value() are valid until the next call, as long as `bytes` is.
    Result parse(std::string_view bytes)
    {
        if (!decoder_) {
            utf8_ = bytes.starts_with(utf8Mark);
            bytes.remove_prefix(utf8_ ? utf8Mark.size() : 0);
            decoder_.emplace(utf8_);
        }
        // Decoded before it is cut: a character of more than one byte may be the "=".
        const std::string_view line = decoder_->decode(bytes);
        const std::size_t end = line.find(keyEnd);
        if (end == std::string_view::npos) {
            key_ = {};
            value_ = line;
            return line.empty() ? Result::Blank : Result::NoKey;
        }
        key_ = line.substr(0, end);
        value_ = line.substr(end + 1);
        return Result::Entry;
    }

    std::string_view key() const noexcept { return key_; }
    std::string_view value() const noexcept { return value_; }

    /// True when the first line began with the mark.
    bool isUtf8() const noexcept { return utf8_; }

private:
    bool utf8_ = false;
    std::optional<CLineDecoder> decoder_; ///< from the first line on
    std::string_view key_;
    std::string_view value_;
};

/// Appends one line to the bytes of a UTF-8 descriptor, after its mark. False, and nothing is appended,
/// when key or value has no UTF-8 form.
bool appendEntry(std::string& bytes, std::string_view key, std::string_view value);

} // namespace format
