#pragma once

#include "database/entities.h"
#include "database/flatTable.h"
#include "input/Problems.h"

#include <array>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

/// What the rows of an import say, before anything is known of the database that they go into.
namespace tool::writing {

/// A text that rows give, and where the first of them stands.
struct Given {
    std::string text;
    RowPlace place;

    bool isGiven() const noexcept { return !text.empty(); }
};

/// What has a number and a name, of which rows may give either.
struct DraftNamed {
    std::optional<long> id;
    Given name;
    Given russianName;
    RowPlace place; ///< of its first row
};

/// Units and names of arguments, as rows give them for one value each: first that of type p and of the first
/// of two arguments, then that of type t and of the second.
using ArgumentTexts = std::array<std::optional<Given>, 2>;

struct DraftDescription : DraftNamed {
    Given units;
    Given russianUnits;
    Given symbol;
    Given argumentUnits; ///< as descriptions have them
    Given argumentNames;
    Given types; ///< given; else those of the values count
    Given forms;
    Given states;
    ArgumentTexts unitsOfArguments;
    ArgumentTexts namesOfArguments;
    std::set<char> usedTypes;
    std::set<char> usedStates;
    bool scalarUsed = false;
    bool vectorUsed = false;
};

struct DraftValue {
    std::size_t description = 0;
    PARAM_TYPE type {};
    Table table;
    Given comments; ///< lines with " | " between
    Given source;
    Given accuracy;
    RowPlace place;
    std::set<double> firstArguments; ///< of two
    std::size_t nextComponent = 0;
};

struct DraftOwner : DraftNamed {
    Owner::Kind kind = Owner::Kind::Substance;
    Given state;
    Given from; ///< of a phase change: number or name of a phase
    Given to;
    std::vector<DraftValue> values;
    std::map<std::size_t, std::size_t> valueOf; ///< by description
};

struct DraftSubstance : DraftNamed {
    Given comment;
    Given russianComment;
    Given formula;
    Given aliases;
    Given cas;
    Given composition; ///< "0.75 Water + 0.25 Salt"
    Given compositionIds; ///< "1:0.75;2:0.25"
    std::vector<DraftOwner> owners { DraftOwner {} }; ///< the substance itself first
};

struct Draft {
    std::vector<DraftSubstance> substances;
    std::vector<DraftDescription> descriptions;
    std::size_t rows = 0;
};

/// Reads the rows of a file. Throws Failure that names row and column of all that is wrong.
Draft readDraft(std::string_view bytes, const std::string& name, const std::function<void()>& eachRow);

} // namespace tool::writing
