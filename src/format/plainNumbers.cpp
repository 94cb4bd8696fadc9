#include "format/plainNumbers.h"

#include <cfenv>

namespace format {

bool plainNumbersAllowed() noexcept
{
    return std::fegetround() == FE_TONEAREST;
}

} // namespace format
