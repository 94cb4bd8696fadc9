#include "check/ValueFiles.h"

#include "check/dataFile.h"
#include "check/listing.h"

#include "files/descriptorLine.h"

#include <fmt/format.h>

namespace tool::check {

namespace {

/// Reads the directories in which a substance with the ID is described.
Tree readSubstances(Context& context, long id)
{
    Tree tree;
    for (const std::string& directory : list(context, "").directories) {
        for (const std::string& name : list(context, directory).filesWith("mtd")) {
            if (Descriptor(context, fmt::format("{}/{}", directory, name)).number("ID") == id) {
                readSubstance(context, directory, tree);
            }
        }
    }
    return tree;
}

std::string readComments(Context& context, const std::string& file)
{
    std::string comments;
    readLines(context, file, [&comments](const RawLine& line) {
        std::string decoded;
        const std::string_view text = decodeLine(line.bytes, false, decoded);
        if (text.starts_with('#')) {
            const std::size_t begin = std::min(text.find_first_not_of("# "), text.size());
            comments += (comments.empty() ? "" : " | ") + std::string(text.substr(begin));
        }
    });
    return comments;
}

/// Numbers that are not finite and subtables with the same argument can be seen in the value itself.
bool isHidden(const Finding& finding)
{
    return finding.kind != "not-finite" && finding.kind != "repeated-subtable";
}

} // namespace

ValueFiles::ValueFiles(const std::string& directory, std::optional<long> substance)
    : context_ { directory, unused_ }
    , tree_(substance ? readSubstances(context_, *substance) : readTree(context_))
{
    for (const SubstanceTree& described : tree_.substances) {
        add(described);
    }
}

void ValueFiles::add(const SubstanceTree& substance)
{
    const long id = substance.self.descriptor.number("ID");
    add(id, Owner::Kind::Substance, substance.self);
    for (const Entity& phase : substance.phases) {
        add(id, Owner::Kind::Phase, phase);
    }
    for (const Entity& change : substance.changes) {
        add(id, Owner::Kind::Change, change);
    }
}

void ValueFiles::add(long substance, Owner::Kind kind, const Entity& owner)
{
    const long id = kind == Owner::Kind::Substance ? Owner().id : owner.descriptor.number("ID");
    for (const Descriptor& head : owner.heads) {
        heads_.emplace(Key { substance, kind, id, head.number("ID") }, std::pair { &owner, &head });
    }
}

ValueNotes ValueFiles::notes(long substance, const Owner& owner, long parameter)
{
    const Key key { substance, owner.kind, owner.id, parameter };
    if (heads_.count(key) != 1) {
        return {};
    }
    const auto [entity, head] = heads_.find(key)->second;
    const std::string file = fmt::format("{}/{}", entity->directory, head->text("Data"));
    Findings findings;
    Context context { context_.root, findings };
    checkDataFile(context, file, head->number("Type"), head->flag("Vector"));
    ValueNotes notes { readComments(context, file), {} };
    for (const Finding& finding : findings.all()) {
        if (isHidden(finding)) {
            notes.misreadings.push_back(finding.what);
        }
    }
    return notes;
}

} // namespace tool::check
