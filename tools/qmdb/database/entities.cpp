#include "database/entities.h"

#include <fmt/format.h>

namespace tool {

std::string stateText(MATTER_STATE state)
{
    switch (state) {
    case MATTER_STATE_SOLID:
        return "solid";
    case MATTER_STATE_LIQUID:
        return "liquid";
    case MATTER_STATE_GAS:
        return "gas";
    case MATTER_STATE_NOT_GIVEN:
        return "state not given";
    }
    return fmt::format("unknown state {}", static_cast<int>(state));
}

} // namespace tool
