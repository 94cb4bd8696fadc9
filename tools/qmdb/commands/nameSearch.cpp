#include "commands/nameSearch.h"

#include "common/characters.h"
#include "common/names.h"

#include <algorithm>
#include <fmt/ranges.h>
#include <map>
#include <optional>

namespace tool {

namespace {

enum class Fit { Whole, Part };

class NameSearch {
public:
    NameSearch(const Database& database, const Annotations& annotations, std::string_view text)
        : database_(database)
        , annotations_(annotations)
        , wanted_(lowerCase(text))
    {
    }

    std::vector<FoundName> run()
    {
        for (const Substance& substance : database_.substances()) {
            addSubstance(substance);
        }
        addParameters();
        std::ranges::stable_sort(found_, {}, &std::pair<Fit, FoundName>::first);
        std::vector<FoundName> names;
        std::ranges::transform(
            found_, std::back_inserter(names), [](const auto& entry) { return entry.second; });
        return names;
    }

private:
    struct Used {
        Parameter parameter;
        std::size_t values = 0;
    };

    /// How the text fits names, of which it may be a part, and words, of which it may not.
    std::optional<Fit> fit(const std::vector<std::string>& names, const std::vector<std::string>& words) const
    {
        std::optional<Fit> best;
        for (const std::string& name : names) {
            const std::string lower = lowerCase(name);
            if (lower == wanted_) {
                return Fit::Whole;
            }
            if (lower.find(wanted_) != std::string::npos) {
                best = Fit::Part;
            }
        }
        const bool word = std::ranges::any_of(
            words, [this](const std::string& word) { return lowerCase(word) == wanted_; });
        return word ? Fit::Whole : best;
    }

    void add(std::optional<Fit> fit, FoundName name)
    {
        if (fit) {
            found_.emplace_back(*fit, std::move(name));
        }
    }

    void addSubstance(const Substance& substance)
    {
        const SubstanceNotes notes = annotations_.substance(substance.id);
        std::vector<std::string> names = annotations_.names(substance.id);
        names.push_back(substance.name);
        names.insert(names.end(), notes.aliases.begin(), notes.aliases.end());
        add(fit(names, { notes.formula, notes.cas }),
            { "substance", substance.id, substance.name, {}, -1, detailsOf(notes) });
        for (const Owner& owner : database_.owners(substance.id)) {
            addOwner(substance, owner);
        }
    }

    static std::string detailsOf(const SubstanceNotes& notes)
    {
        std::vector<std::string> details;
        if (!notes.formula.empty()) {
            details.push_back(printable(notes.formula));
        }
        if (!notes.cas.empty()) {
            details.push_back("CAS " + printable(notes.cas));
        }
        if (!notes.aliases.empty()) {
            details.push_back(
                fmt::format("also {}", printable(fmt::format("{}", fmt::join(notes.aliases, ", ")))));
        }
        return fmt::format("{}", fmt::join(details, ", "));
    }

    /// A phase or a phase change, by the name that is shown: the other language's is in its own file.
    void addOwner(const Substance& substance, const Owner& owner)
    {
        if (owner.kind != Owner::Kind::Substance) {
            const bool phase = owner.kind == Owner::Kind::Phase;
            add(fit({ owner.name }, {}),
                { phase ? "phase" : "phase change", owner.id, owner.name, substance.name, substance.id,
                    phase ? stateText(owner.state) : "" });
        }
        for (const Parameter& parameter : database_.parameters(substance.id, owner)) {
            ++parameters_.try_emplace(parameter.id, Used { parameter }).first->second.values;
        }
    }

    void addParameters()
    {
        for (const auto& [id, used] : parameters_) {
            const Parameter& parameter = used.parameter;
            const std::string symbol = annotations_.description(id).symbol;
            std::vector<std::string> names = annotations_.descriptionNames(id);
            names.push_back(parameter.name);
            add(fit(names, { symbol }),
                { "parameter", id, parameter.name, {}, -1,
                    fmt::format("{}{}{}{}{} value{}; --at or a limit lists them", printable(symbol),
                        symbol.empty() ? "" : ", ", parameter.units, parameter.units.empty() ? "" : ", ",
                        used.values, used.values == 1 ? "" : "s") });
        }
    }

    const Database& database_;
    const Annotations& annotations_;
    std::string wanted_;
    std::vector<std::pair<Fit, FoundName>> found_;
    std::map<long, Used> parameters_;
};

} // namespace

std::vector<FoundName> findNames(
    const Database& database, const Annotations& annotations, std::string_view text)
{
    return NameSearch(database, annotations, text).run();
}

} // namespace tool
