#include "valueText.h"

#include <array>
#include <charconv>

namespace bench {

namespace {

double unit(Random& random)
{
    return static_cast<double>(random() >> 11) * 0x1p-53;
}

void appendNumber(std::string& text, double value, std::chars_format format, int precision)
{
    std::array<char, 64> buffer;
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, format, precision);
    text.append(buffer.data(), result.ptr);
}

/// Six significant digits, as the library writes; one number in eight is very small, one very large.
void appendValue(std::string& text, Random& random)
{
    const auto size = random() % 8;
    const double value = size == 0 ? (unit(random) - 0.5) * 1e-6
        : size == 1                ? unit(random) * 1e9
                                   : (unit(random) - 0.2) * 5000;
    appendNumber(text, value, std::chars_format::general, 6);
}

void appendValues(std::string& text, ValueKind kind, Random& random)
{
    appendValue(text, random);
    if (isVector(kind)) {
        text += ' ';
        appendValue(text, random);
        text += ' ';
        appendValue(text, random);
    }
    text += '\n';
}

void appendRows(std::string& text, const ValueShape& shape, Random& random)
{
    for (long row = 0; row < shape.rows; ++row) {
        appendNumber(text, 273.15 + 0.001 * static_cast<double>(row), std::chars_format::fixed, 3);
        text += ' ';
        appendValues(text, shape.kind, random);
    }
}

} // namespace

std::string valueText(const ValueShape& shape, Random& random)
{
    std::string text;
    switch (shape.kind) {
    case ValueKind::constant:
    case ValueKind::constantVector:
        appendValues(text, shape.kind, random);
        break;
    case ValueKind::table:
    case ValueKind::tableVector:
        text = "# argument, value\n";
        appendRows(text, shape, random);
        break;
    case ValueKind::table2D:
    case ValueKind::table2DVector:
        text = "# P= first argument, then rows of second argument and value\n";
        for (long subtable = 0; subtable < shape.subtables; ++subtable) {
            text += "P=" + std::to_string(1000 + 10 * subtable) + "\n";
            appendRows(text, shape, random);
        }
        break;
    }
    return text;
}

} // namespace bench
