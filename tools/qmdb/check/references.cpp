#include "check/rules.h"

#include "database/flatTable.h"

#include <fmt/format.h>
#include <limits>
#include <map>

namespace tool::check {

namespace {

using format::Key;
using Descriptors = std::vector<const Descriptor*>;

Descriptors descriptorsOf(const std::vector<Entity>& entities)
{
    Descriptors descriptors;
    for (const Entity& entity : entities) {
        descriptors.push_back(&entity.descriptor);
    }
    return descriptors;
}

Descriptors descriptorsOf(const std::vector<Descriptor>& all)
{
    Descriptors descriptors;
    for (const Descriptor& descriptor : all) {
        descriptors.push_back(&descriptor);
    }
    return descriptors;
}

std::set<long> idsOf(const Descriptors& descriptors)
{
    std::set<long> ids;
    for (const Descriptor* descriptor : descriptors) {
        if (descriptor->has(Key::ID)) {
            ids.insert(descriptor->number(Key::ID));
        }
    }
    return ids;
}

void checkUniqueIds(Context& context, const Descriptors& descriptors, std::string_view kind)
{
    std::map<long, const Descriptor*> holders;
    for (const Descriptor* descriptor : descriptors) {
        if (!descriptor->has(Key::ID)) {
            continue;
        }
        const auto [holder, isNew] = holders.emplace(descriptor->number(Key::ID), descriptor);
        if (!isNew) {
            context.findings.error("duplicate-id", descriptor->place(Key::ID),
                fmt::format("{} has this ID too: only one {} of both is seen", holder->second->file(), kind),
                "give one of them another ID");
        }
    }
}

/// Additions give the next ID and return it as an int, of which negative ones mean failures.
void checkIds(Context& context, const Descriptors& descriptors)
{
    constexpr long highest = std::numeric_limits<int>::max() - 1;
    for (const Descriptor* descriptor : descriptors) {
        const long id = descriptor->number(Key::ID);
        if (id < 0 || id > highest) {
            context.findings.error("bad-id", descriptor->place(Key::ID),
                id == format::noId ? std::string("the ID -1 stands for none")
                                   : fmt::format("the ID {} is not among 0 to {}, so that additions cannot "
                                                 "tell IDs from failures",
                                       id, highest),
                "give it another ID");
        }
    }
}

/// `behind` is the directory of the substance, whose phases may be at fault.
void checkChange(
    Context& context, const Descriptor& change, const std::set<long>& phases, const std::string& behind)
{
    for (const Key key : { Key::Phase1, Key::Phase2 }) {
        if (change.has(key) && !phases.contains(change.number(key))) {
            context.findings.error("unknown-phase", change.place(key).behind(behind),
                fmt::format("the substance has no phase {}", change.number(key)),
                "write the ID of one of its phases");
        }
    }
    const bool both = change.has(Key::Phase1) && change.has(Key::Phase2);
    if (both && change.number(Key::Phase1) == change.number(Key::Phase2)) {
        context.findings.warning("same-phase", change.place(Key::Phase2),
            "the phase change leads from a phase to itself", "write the ID of the phase after the change");
    }
}

/// Checks a head against the description of its parameter.
void checkHead(Context& context, const Descriptor& head, const Descriptor& description)
{
    const auto type = static_cast<PARAM_TYPE>(head.number(Key::Type));
    const char letter = format::letterOf(type);
    if (letter != format::noLetter && !format::isAmong(letter, description.text(Key::DataTypes))) {
        context.findings.error("type-not-allowed", head.place(Key::Type),
            fmt::format("{} does not allow the type {} ({})", description.file(), head.number(Key::Type),
                typeText(type)),
            fmt::format("change the type, or add {} to \"DataTypes\" there", letter));
    }
    const Key form = head.flag(Key::Vector) ? Key::Vector : Key::Scalar;
    if (!description.flag(form)) {
        context.findings.error("form-not-allowed", head.place(Key::Vector),
            fmt::format(
                "{} does not allow {}", description.file(), head.flag(Key::Vector) ? "vectors" : "scalars"),
            fmt::format("change \"Vector\" here, or write \"{}=1\" there", textOf(form)));
    }
}

void checkState(Context& context, const Descriptor& head, const Descriptor& description, long state)
{
    const char letter = format::letterOf(static_cast<MATTER_STATE>(state));
    if (letter == format::noLetter) {
        return; // reported with the phase
    }
    if (!format::isAmong(letter, description.text(Key::AvForPhases))) {
        context.findings.error("state-not-allowed", head.place(Key::ID),
            fmt::format(
                "{} does not offer the parameter for the phase's aggregate state", description.file()),
            fmt::format("remove the parameter here, or add {} to \"AvForPhases\" there", letter));
    }
}

using Descriptions = std::map<long, const Descriptor*>;

/// `phase` is the descriptor of a phase, null for other owners.
void checkHeads(
    Context& context, const Entity& owner, const Descriptions& descriptions, const Descriptor* phase)
{
    checkUniqueIds(context, descriptorsOf(owner.heads), "value");
    for (const Descriptor& head : owner.heads) {
        if (!head.has(Key::ID)) {
            continue; // unread, or reported as a missing key
        }
        const auto description = descriptions.find(head.number(Key::ID));
        if (description == descriptions.end()) {
            context.findings.error("no-description", head.place(Key::ID),
                fmt::format("no description has the ID {}: the parameter has no name and no units",
                    head.number(Key::ID)),
                "write the ID of a description, or add one");
            continue;
        }
        checkHead(context, head, *description->second);
        if (phase) {
            checkState(context, head, *description->second, phase->number(Key::Aggreg));
        }
    }
}

void checkSubstance(Context& context, const SubstanceTree& substance, const Descriptions& descriptions)
{
    const Descriptors phases = descriptorsOf(substance.phases);
    const Descriptors changes = descriptorsOf(substance.changes);
    checkUniqueIds(context, phases, "phase");
    checkUniqueIds(context, changes, "phase change");
    checkIds(context, phases);
    checkIds(context, changes);
    for (const Descriptor* change : changes) {
        checkChange(context, *change, idsOf(phases), substance.self.directory);
    }
    checkHeads(context, substance.self, descriptions, nullptr);
    for (const Entity& phase : substance.phases) {
        checkHeads(context, phase, descriptions, &phase.descriptor);
    }
    for (const Entity& change : substance.changes) {
        checkHeads(context, change, descriptions, nullptr);
    }
}

} // namespace

void checkReferences(Context& context, const Tree& tree)
{
    Descriptors substances;
    for (const SubstanceTree& substance : tree.substances) {
        substances.push_back(&substance.self.descriptor);
    }
    checkUniqueIds(context, substances, "substance");
    checkUniqueIds(context, descriptorsOf(tree.descriptions), "description");
    checkIds(context, substances);
    checkIds(context, descriptorsOf(tree.descriptions));
    Descriptions descriptions;
    for (const Descriptor& description : tree.descriptions) {
        if (description.has(Key::ID)) {
            descriptions.emplace(description.number(Key::ID), &description);
        }
    }
    const std::set<long> ids = idsOf(substances);
    for (const SubstanceTree& substance : tree.substances) {
        checkComposition(context, substance.self.descriptor, ids);
        checkSubstance(context, substance, descriptions);
    }
}

} // namespace tool::check
