#include "check/misreadings.h"

#include "check/rules.h"

namespace tool::check {

namespace {

/// Numbers that are not finite and the order of subtables can be seen in the value itself.
bool isHidden(const Finding& finding)
{
    return finding.kind != "not-finite" && finding.kind != "repeated-subtable"
        && finding.kind != "decreasing-subtable";
}

} // namespace

std::vector<std::string> misreadings(
    const std::string& root, const std::string& file, const Parameter& parameter)
{
    Findings findings;
    Context context { root, findings };
    checkDataFile(context, file, parameter.type, parameter.vector);
    std::vector<std::string> hidden;
    for (const Finding& finding : findings.all()) {
        if (isHidden(finding)) {
            hidden.push_back(finding.what);
        }
    }
    return hidden;
}

} // namespace tool::check
