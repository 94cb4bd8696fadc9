#include "format/items.h"

#include "format/vocabulary.h"

#include <algorithm>

namespace format {

namespace {

constexpr std::size_t mostArgumentItems = 2;

bool isDigit(char character) noexcept
{
    return character >= '0' && character <= '9';
}

} // namespace

std::vector<std::string_view> splitItems(std::string_view text)
{
    std::vector<std::string_view> items;
    while (!text.empty()) {
        const std::size_t end = text.find(itemSeparator);
        items.push_back(text.substr(0, end));
        if (end == std::string_view::npos) {
            break;
        }
        text.remove_prefix(end + 1);
        if (text.empty()) {
            items.push_back(text);
        }
    }
    return items;
}

std::size_t argumentsOf(PARAM_TYPE type) noexcept
{
    switch (type) {
    case PARAM_TYPE_TABLE_T:
    case PARAM_TYPE_TABLE_P:
        return 1;
    case PARAM_TYPE_TABLE2D_T:
    case PARAM_TYPE_TABLE2D_X:
        return 2;
    case PARAM_TYPE_CONSTANT:
        break;
    }
    return 0;
}

std::size_t itemIndexOf(PARAM_TYPE type, std::size_t argument) noexcept
{
    return type == PARAM_TYPE_TABLE_T ? 1 : argument;
}

std::string_view argumentItem(std::string_view items, PARAM_TYPE type, std::size_t argument)
{
    const auto all = splitItems(items);
    if (argument >= argumentsOf(type) || all.empty() || all.size() > mostArgumentItems) {
        return {};
    }
    return all.size() == 1 ? all.front() : all[itemIndexOf(type, argument)];
}

std::string_view usualArgumentName(PARAM_TYPE type, std::size_t argument) noexcept
{
    if (type == PARAM_TYPE_TABLE2D_X || argument >= argumentsOf(type)) {
        return {};
    }
    return itemIndexOf(type, argument) == 0 ? "pressure" : "temperature";
}

bool isCasNumber(std::string_view text) noexcept
{
    // Two to seven digits, two digits, and the check digit, which is that of the sum of all digits before
    // it, each times its place counted from the right.
    constexpr std::size_t tail = 5; // "-18-5"
    const std::size_t head = text.size() - std::min(tail, text.size());
    if (head < 2 || head > 7 || text[head] != '-' || text[head + 3] != '-' || !isDigit(text.back())) {
        return false;
    }
    int sum = 0;
    int place = 0;
    for (std::size_t i = text.size() - 2; i-- > 0;) {
        if (isDigit(text[i])) {
            sum += ++place * (text[i] - '0');
        } else if (i != head) {
            return false;
        }
    }
    return text.front() != '0' && sum % 10 == text.back() - '0';
}

} // namespace format
