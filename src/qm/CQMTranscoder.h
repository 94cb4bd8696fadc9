#pragma once

#include <string>
#include <string_view>

namespace qm {

/// Conversions between wide text and the locale's multibyte encoding.
///
/// The locale is the one that the host has set; the library never sets it.
class CQMTranscoder {
public:
    /// Empty when the text is empty or the locale cannot convert it. The text ends at its first NUL.
    static std::string WideToAnsi(std::wstring_view wide);
    static std::wstring AnsiToWide(std::string_view bytes);

    /// True when ASCII bytes mean ASCII characters in the current locale.
    static bool IsAnsiAscii();
};

} // namespace qm
