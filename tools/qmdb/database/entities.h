#pragma once

#include <string>
#include <vector>

#include "qmdatabase/records.h"

namespace tool {

struct Substance {
    long id = 0;
    std::string name;
    std::string comment;
    long mixture = 0;
    std::vector<COMPONENT> composition;
};

struct Parameter {
    long id = 0;
    std::string name;
    std::string units;
    PARAM_TYPE type {};
    bool vector = false;
};

struct Description {
    long id = 0;
    std::string name;
    std::string units;
    bool scalar = false;
    bool vector = false;
    std::string dataTypes;
};

/// What parameters are attached to: a substance itself, one of its phases or one of its phase changes.
struct Owner {
    enum class Kind { Substance, Phase, Change };

    Kind kind = Kind::Substance;
    long id = -1; ///< of the phase or the phase change
    std::string name;
    MATTER_STATE state = MATTER_STATE_NOT_GIVEN; ///< of a phase
    long phase1 = -1; ///< of a phase change
    long phase2 = -1;
};

/// "solid", "liquid", "gas", or the number that the database holds.
std::string stateText(MATTER_STATE state);

} // namespace tool
