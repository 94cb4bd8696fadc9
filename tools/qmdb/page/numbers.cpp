#include "page/numbers.h"

#include "common/numbers.h"

#include <bit>
#include <cstdint>

namespace tool {

namespace {

constexpr char binaryMark = '=';

std::vector<double> plainNumbers(const Table& table)
{
    std::vector<double> numbers;
    for (const Point& point : table.points) {
        const std::vector<double> row = numbersOf(table, point);
        numbers.insert(numbers.end(), row.begin(), row.end());
    }
    return numbers;
}

std::vector<double> subtableNumbers(const Table& table)
{
    std::vector<double> numbers;
    for (std::size_t i = 0; i < table.subtables.size(); ++i) {
        const std::size_t begin = table.subtables[i];
        const std::size_t end = i + 1 < table.subtables.size() ? table.subtables[i + 1] : table.points.size();
        numbers.push_back(table.points[begin].arguments[0]);
        numbers.push_back(static_cast<double>(end - begin));
        for (std::size_t row = begin; row < end; ++row) {
            const std::vector<double> all = numbersOf(table, table.points[row]);
            numbers.insert(numbers.end(), all.begin() + 1, all.end());
        }
    }
    return numbers;
}

std::string decimal(const std::vector<double>& numbers)
{
    std::string text;
    for (const double number : numbers) {
        text += numberText(number);
        text += ' ';
    }
    if (!text.empty()) {
        text.pop_back();
    }
    return text;
}

std::string bytesOf(const std::vector<double>& numbers)
{
    std::string bytes;
    for (const double number : numbers) {
        const auto bits = std::bit_cast<std::uint64_t>(number);
        for (int shift = 0; shift < 64; shift += 8) {
            bytes += static_cast<char>(bits >> shift & 0xFF);
        }
    }
    return bytes;
}

/// The mark and the base64 form.
std::string base64(const std::string& bytes)
{
    constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text(1, binaryMark);
    for (std::size_t at = 0; at < bytes.size(); at += 3) {
        const auto byte = [&](std::size_t index) {
            return at + index < bytes.size() ? static_cast<unsigned char>(bytes[at + index]) : 0U;
        };
        const unsigned group = byte(0) << 16 | byte(1) << 8 | byte(2);
        for (const int shift : { 18, 12, 6, 0 }) {
            text += alphabet[group >> shift & 63];
        }
    }
    const std::size_t padding = (3 - bytes.size() % 3) % 3;
    text.resize(text.size() - padding);
    text.append(padding, '=');
    return text;
}

} // namespace

std::string encodedNumbers(const Table& table)
{
    const std::vector<double> numbers = table.arguments == 2 ? subtableNumbers(table) : plainNumbers(table);
    std::string text = decimal(numbers);
    const std::size_t binaryLength = 1 + (numbers.size() * sizeof(double) + 2) / 3 * 4;
    return text.size() <= binaryLength ? text : base64(bytesOf(numbers));
}

} // namespace tool
