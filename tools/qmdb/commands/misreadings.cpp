#include "commands/misreadings.h"

#include "check/misreadings.h"
#include "commands/owners.h"

#include <cstdio>
#include <fmt/format.h>

namespace tool {

void warnOfMisreadings(const Annotations& annotations, const std::string& dataFile,
    const Substance& substance, const Owner& owner, const Parameter& parameter)
{
    if (dataFile.empty()) {
        return; // which file it is cannot be told
    }
    const auto misreadings = check::misreadings(annotations.directory(), dataFile, parameter);
    if (misreadings.empty()) {
        return;
    }
    const std::size_t more = misreadings.size() - 1;
    fmt::print(stderr, "qmdb: warning: {} of {}: {}{}\n", parameter.name, ownerText(substance, owner),
        misreadings.front(), more > 0 ? fmt::format("; and {} more, which \"qmdb check\" lists", more) : "");
}

} // namespace tool
