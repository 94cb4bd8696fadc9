#pragma once

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
    std::string_view decode(std::string_view bytes);

private:
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
    Result parse(std::string_view bytes);

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
