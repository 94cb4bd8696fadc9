#include "input/Problems.h"

#include "common/failure.h"

#include <fmt/ranges.h>

namespace tool {

namespace {

constexpr std::size_t mostProblems = 20;

} // namespace

void Problems::add(const RowPlace& place, std::string_view column, std::string_view what)
{
    add(fmt::format("{}: row {} (line {}), column {}: {}", name_, place.row, place.line, column, what));
}

void Problems::add(const RowPlace& place, std::string_view what)
{
    add(fmt::format("{}: row {} (line {}): {}", name_, place.row, place.line, what));
}

void Problems::throwIfAny() const
{
    if (count_ > 0) {
        const std::size_t more = count_ - texts_.size();
        throw Failure("{}:\n{}{}", outcome_, fmt::join(texts_, "\n"),
            more > 0 ? fmt::format("\nand {} more", more) : "");
    }
}

void Problems::add(std::string text)
{
    if (++count_ <= mostProblems) {
        texts_.push_back(std::move(text));
    }
}

} // namespace tool
