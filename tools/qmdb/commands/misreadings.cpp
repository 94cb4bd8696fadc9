#include "commands/misreadings.h"

#include "commands/owners.h"

#include <cstdio>
#include <fmt/format.h>

namespace tool {

void warnOfMisreadings(const check::ValueNotes& notes, const Substance& substance, const Owner& owner,
    const Parameter& parameter)
{
    if (notes.misreadings.empty()) {
        return;
    }
    const std::size_t more = notes.misreadings.size() - 1;
    fmt::print(stderr, "qmdb: warning: {} of {}: {}{}\n", parameter.name, ownerText(substance, owner),
        notes.misreadings.front(),
        more > 0 ? fmt::format("; and {} more, which \"qmdb check\" lists", more) : "");
}

} // namespace tool
