#include "check/data.h"

#include "check/dataFile.h"
#include "check/listing.h"
#include "common/shown.h"

#include "qm/CQMFileSystem.h"

#include <fmt/format.h>
#include <map>

namespace tool::check {

namespace {

std::string dataFileOf(const Entity& owner, const Descriptor& head)
{
    return fmt::format("{}/{}", owner.directory, head.text("Data"));
}

void checkHeadData(Context& context, const Entity& owner, const Descriptor& head)
{
    const std::string file = dataFileOf(owner, head);
    if (head.text("Data").empty()) {
        context.findings.error("no-data-file", head.place("Data"), "no data file is named", "write its name");
    } else if (!qm::CQMFileSystem::FileExists(context.pathOf(file))) {
        context.findings.error("no-data-file", head.place("Data"),
            fmt::format("the data file {} does not exist or may not be read", shown(head.text("Data"))),
            "write the name of a file beside this one");
    } else {
        checkDataFile(context, file, head.number("Type"), head.flag("Vector"));
    }
}

} // namespace

void checkData(Context& context, const Entity& owner)
{
    std::map<std::string, std::string> heads; ///< by the data file that they name
    for (const Descriptor& head : owner.heads) {
        if (!head.has("Data")) {
            continue; // reported as a missing key
        }
        checkHeadData(context, owner, head);
        const auto [other, isNew] = heads.emplace(dataFileOf(owner, head), head.file());
        if (!isNew) {
            context.findings.warning("shared-data", head.place("Data"),
                fmt::format("{} names the same data file", other->second),
                "give each head a file of its own");
        }
    }
    for (const std::string& name : list(context, owner.directory).filesWith("dat")) {
        const std::string file = fmt::format("{}/{}", owner.directory, name);
        if (!heads.contains(file)) {
            context.findings.warning("orphan-data", { file, 0 }, "no parameter head names the data file",
                "name it in a head, or remove it");
        }
    }
}

} // namespace tool::check
