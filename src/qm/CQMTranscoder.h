#pragma once

#include <string>
#include <string_view>

namespace qm {

/// Conversions between wide text, inner text (qm/text.h), UTF-8 and the locale's multibyte encoding.
///
/// The locale is the one that the host has set; the library never sets it.
class CQMTranscoder {
public:
    /// Throws EQMException when a value has no UTF-8 form (0x110000 and above).
    static std::string WideToUTF8(std::wstring_view wide);
    /// Throws EQMException for bytes that are not UTF-8; overlong forms and surrogates pass.
    static std::wstring UTF8ToWide(std::string_view bytes);

    /// Empty when the text is empty or the locale cannot convert it. The text ends at its first NUL.
    static std::string WideToAnsi(std::wstring_view wide);
    static std::wstring AnsiToWide(std::string_view bytes);

    /// The same four with inner text in the place of wide text.
    static std::string TextToUTF8(std::string_view text);
    static std::string UTF8ToText(std::string_view bytes);
    static std::string TextToAnsi(std::string_view text);
    static std::string AnsiToText(std::string_view bytes);

    /// True when ASCII bytes mean ASCII characters in the current locale.
    static bool IsAnsiAscii();
};

} // namespace qm
