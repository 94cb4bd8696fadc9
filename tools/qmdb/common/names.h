#pragma once

#include <algorithm>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace tool {

/// What a user may mean by a name or a number.
struct Choice {
    long id = 0;
    std::string name;
};

/// The further names of the choice with an index: in other languages, symbols and the like.
using OtherNames = std::function<std::vector<std::string>(std::size_t)>;

/// The index of the choice that `wanted` names: by display name, else by number, else by display name
/// without regard to case, else by another name, last without regard to case. Throws UnknownName with the
/// near matches when none fits, and Failure with what it may mean when several do.
std::size_t chooseIndex(const std::vector<Choice>& choices, std::string_view wanted, std::string_view kind,
    const OtherNames& others = {});

/// `others` gives the further names of one of them; it is asked only when the display names do not tell.
template <class Named>
const Named& choose(const std::vector<Named>& all, std::string_view wanted, std::string_view kind,
    const std::function<std::vector<std::string>(const Named&)>& others = {})
{
    std::vector<Choice> choices;
    choices.reserve(all.size());
    for (const Named& named : all) {
        choices.push_back({ named.id, named.name });
    }
    const OtherNames ofIndex = [&](std::size_t index) { return others(all[index]); };
    return all[chooseIndex(choices, wanted, kind, others ? ofIndex : OtherNames())];
}

std::string lowerCase(std::string_view utf8);

/// The name with its number: how lists and messages show it.
std::string label(std::string_view name, long id);

/// The texts most like `wanted`, best first.
std::vector<std::string> nearMatches(const std::vector<std::string>& texts, std::string_view wanted);

} // namespace tool
