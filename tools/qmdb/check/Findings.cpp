#include "check/Findings.h"

#include <algorithm>

namespace tool::check {

std::size_t Findings::count(Severity severity) const
{
    const auto same = [severity](const Finding& finding) { return finding.severity == severity; };
    return static_cast<std::size_t>(std::ranges::count_if(findings_, same));
}

} // namespace tool::check
