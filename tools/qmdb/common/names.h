#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

namespace tool {

/// What a user may mean by a name or a number.
struct Choice {
    long id = 0;
    std::string name;
};

/// The index of the choice that `wanted` names: by display name, else by number, else by display name
/// without regard to case. Throws Failure with the near matches when none or several fit.
std::size_t chooseIndex(const std::vector<Choice>& choices, std::string_view wanted, std::string_view kind);

template <class Named>
const Named& choose(const std::vector<Named>& all, std::string_view wanted, std::string_view kind)
{
    std::vector<Choice> choices;
    choices.reserve(all.size());
    for (const Named& named : all) {
        choices.push_back({ named.id, named.name });
    }
    return all[chooseIndex(choices, wanted, kind)];
}

std::string lowerCase(std::string_view utf8);

/// The name with its number: how lists and messages show it.
std::string label(std::string_view name, long id);

/// The texts most like `wanted`, best first.
std::vector<std::string> nearMatches(const std::vector<std::string>& texts, std::string_view wanted);

} // namespace tool
