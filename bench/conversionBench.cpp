// Conversions between text and numbers and between UTF-8 and wide text, a thousand at a time.
#include "cases.h"
#include "format/innerText.h"
#include "format/numbers.h"
#include "valueText.h"

#include <array>
#include <charconv>
#include <string>
#include <string_view>
#include <vector>

namespace bench {

namespace {

constexpr long count = 1000;

std::vector<std::string> numberTexts()
{
    Random random(1);
    std::vector<std::string> texts;
    for (long i = 0; i < count; ++i) {
        std::string text = valueText({ ValueKind::constant }, random);
        text.pop_back(); // the line end
        texts.push_back(std::move(text));
    }
    return texts;
}

double parsed(std::string_view text)
{
    double value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

std::string written(double value)
{
    std::array<char, 32> buffer;
    const auto result
        = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::general, 6);
    return { buffer.data(), result.ptr };
}

/// Names as the descriptors hold them, one in three beyond ASCII.
std::vector<std::string> names()
{
    std::vector<std::string> texts;
    for (long i = 0; i < count; ++i) {
        texts.push_back((i % 3 == 0 ? "Диоксид углерода " : "Carbon dioxide ") + std::to_string(i));
    }
    return texts;
}

/// Decodes without a check; enough for names of two bytes a letter.
std::wstring decoded(std::string_view text)
{
    std::wstring wide;
    wide.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        wide
            += byte < 0x80 ? wchar_t { byte } : static_cast<wchar_t>((byte & 0x1F) << 6 | (text[++i] & 0x3F));
    }
    return wide;
}

std::string encoded(std::wstring_view wide)
{
    std::string text;
    text.reserve(wide.size() * 2);
    for (const wchar_t letter : wide) {
        if (letter < 0x80) {
            text += static_cast<char>(letter);
        } else {
            text += static_cast<char>(0xC0 | letter >> 6);
            text += static_cast<char>(0x80 | (letter & 0x3F));
        }
    }
    return text;
}

template <class Input, class Convert>
void addWay(const std::string& job, const std::string& way, const std::vector<Input>& inputs, Convert convert)
{
    const CaseName name { job, Scale::small, "items:" + std::to_string(count) };
    addCase(name, way, [inputs, convert](benchmark::State& state) {
        for (auto _ : state) {
            for (const Input& input : inputs) {
                benchmark::DoNotOptimize(convert(input));
            }
        }
    });
}

} // namespace

void addConversionCases()
{
    const std::vector<std::string> texts = numberTexts();
    addWay("text to number", "floor", texts, parsed);
    addWay("text to number", "library", texts, format::wstr2double);

    std::vector<double> values;
    for (const std::string& text : texts) {
        values.push_back(parsed(text));
    }
    addWay("number to text", "floor", values, written);
    addWay("number to text", "library", values, format::double2wstr);

    const std::vector<std::string> narrow = names();
    addWay("UTF-8 to wide", "floor", narrow, decoded);
    addWay("UTF-8 to wide", "library", narrow,
        [](const std::string& bytes) { return format::text::toWide(*format::text::fromUtf8(bytes)); });

    std::vector<std::wstring> wide;
    for (const std::string& text : narrow) {
        wide.push_back(decoded(text));
    }
    addWay("wide to UTF-8", "floor", wide, encoded);
    addWay("wide to UTF-8", "library", wide,
        [](const std::wstring& text) { return *format::text::toUtf8(format::text::fromWide(text)); });
}

} // namespace bench
