#pragma once

#include <span>
#include <string>
#include <string_view>

namespace tool {

/// Fills a record's text field. Throws Failure when the text is empty, too long for it, holds control
/// characters or begins or ends with a blank.
void setName(std::span<wchar_t> field, const std::string& text, std::string_view what);
/// The same for a text that may be empty.
void setText(std::span<wchar_t> field, const std::string& text, std::string_view what);

} // namespace tool
