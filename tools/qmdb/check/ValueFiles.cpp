#include "check/ValueFiles.h"

#include "check/listing.h"
#include "check/rules.h"

#include "format/rows.h"

#include <algorithm>
#include <fmt/format.h>
#include <tuple>

namespace tool::check {

namespace {

using format::Key;

/// Reads the directories in which a substance with the ID is described.
Tree readSubstances(Context& context, long id)
{
    Tree tree;
    for (const std::string& directory : list(context, "").directories) {
        for (const std::string& name : list(context, directory).filesWith(format::substanceExtension)) {
            if (Descriptor(context, fmt::format("{}/{}", directory, name)).number(Key::ID) == id) {
                readSubstance(context, directory, tree);
            }
        }
    }
    return tree;
}

std::string readComments(Context& context, const std::string& file)
{
    std::string comments;
    format::CLineDecoder decoder(false);
    readLines(context, file, [&](const RawLine& line) {
        const std::string_view text = decoder.decode(line.bytes);
        if (text.starts_with(format::commentSign)) {
            const std::size_t begin = std::min(text.find_first_not_of("# "), text.size());
            comments += (comments.empty() ? "" : " | ") + std::string(text.substr(begin));
        }
    });
    return comments;
}

/// Numbers that are not finite and the order of subtables can be seen in the value itself.
bool isHidden(const Finding& finding)
{
    return finding.kind != "not-finite" && finding.kind != "repeated-subtable"
        && finding.kind != "decreasing-subtable";
}

} // namespace

/// The heads by what they belong to.
class ValueFiles::Heads {
public:
    Heads(const std::string& directory, std::optional<long> substance)
        : root_(directory)
    {
        Findings unused;
        Context context { directory, unused };
        tree_ = substance ? readSubstances(context, *substance) : readTree(context);
        for (const SubstanceTree& described : tree_.substances) {
            add(described);
        }
    }

    ValueNotes notes(long substance, const Owner& owner, long parameter) const
    {
        const auto [first, last] = heads_.equal_range({ substance, owner.kind, owner.id, parameter });
        if (first == last || std::next(first) != last) {
            return {};
        }
        const auto& [entity, head] = first->second;
        const std::string file = fmt::format("{}/{}", entity->directory, head->text(Key::Data));
        Findings findings;
        Context context { root_, findings };
        checkDataFile(context, file, head->number(Key::Type), head->flag(Key::Vector));
        ValueNotes notes { readComments(context, file), {} };
        for (const Finding& finding : findings.all()) {
            if (isHidden(finding)) {
                notes.misreadings.push_back(finding.what);
            }
        }
        return notes;
    }

private:
    using Place = std::tuple<long, Owner::Kind, long, long>;

    void add(const SubstanceTree& substance)
    {
        const long id = substance.self.descriptor.number(Key::ID);
        add({ id, Owner::Kind::Substance, Owner().id, 0 }, substance.self);
        for (const Entity& phase : substance.phases) {
            add({ id, Owner::Kind::Phase, phase.descriptor.number(Key::ID), 0 }, phase);
        }
        for (const Entity& change : substance.changes) {
            add({ id, Owner::Kind::Change, change.descriptor.number(Key::ID), 0 }, change);
        }
    }

    void add(Place place, const Entity& owner)
    {
        for (const Descriptor& head : owner.heads) {
            std::get<3>(place) = head.number(Key::ID);
            heads_.emplace(place, std::pair { &owner, &head });
        }
    }

    std::string root_;
    Tree tree_;
    std::multimap<Place, std::pair<const Entity*, const Descriptor*>> heads_;
};

ValueFiles::ValueFiles(const std::string& directory, std::optional<long> substance)
    : heads_(std::make_unique<const Heads>(directory, substance))
{
}

ValueFiles::~ValueFiles() = default;

ValueNotes ValueFiles::notes(long substance, const Owner& owner, long parameter) const
{
    return heads_->notes(substance, owner, parameter);
}

} // namespace tool::check
