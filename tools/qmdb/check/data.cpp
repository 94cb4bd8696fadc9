#include "check/rules.h"

#include "check/listing.h"
#include "common/characters.h"

#include <fmt/format.h>
#include <map>
#include <unistd.h>

namespace tool::check {

namespace {

using format::Key;

void checkHeadData(Context& context, const Entity& owner, const Descriptor& head)
{
    const std::string file = dataFileOf(owner, head);
    if (head.text(Key::Data).empty()) {
        context.findings.error(
            "no-data-file", head.place(Key::Data), "no data file is named", "write its name");
    } else if (::access(context.pathOf(file).c_str(), R_OK) != 0) {
        context.findings.error("no-data-file", head.place(Key::Data),
            fmt::format("the data file {} does not exist or may not be read", shown(head.text(Key::Data))),
            "write the name of a file beside this one");
    } else {
        checkDataFile(context, file, head.number(Key::Type), head.flag(Key::Vector));
    }
}

} // namespace

std::string dataFileOf(const Entity& owner, const Descriptor& head)
{
    return fmt::format("{}/{}", owner.directory, head.text(Key::Data));
}

void checkData(Context& context, const Entity& owner)
{
    std::map<std::string, std::string> heads; ///< by the data file that they name
    for (const Descriptor& head : owner.heads) {
        if (!head.has(Key::Data)) {
            continue; // reported as a missing key
        }
        checkHeadData(context, owner, head);
        const auto [other, isNew] = heads.emplace(dataFileOf(owner, head), head.file());
        if (!isNew) {
            context.findings.warning("shared-data", head.place(Key::Data),
                fmt::format("{} names the same data file", other->second),
                "give each head a file of its own");
        }
    }
    for (const std::string& name : list(context, owner.directory).filesWith(format::dataExtension)) {
        const std::string file = fmt::format("{}/{}", owner.directory, name);
        if (!heads.contains(file)) {
            context.findings.warning("orphan-data", { file }, "no parameter head names the data file",
                "name it in a head, or remove it");
        }
    }
}

} // namespace tool::check
