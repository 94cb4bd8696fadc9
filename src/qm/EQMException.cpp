#include "qm/EQMException.h"

#include <cstdio>

namespace qm {

const char* EQMException::what() const noexcept
{
    static thread_local char buffer[120];
    std::snprintf(buffer, sizeof buffer, "EQMException with code=%08lX, subcode=%d", code, subcode);
    return buffer;
}

} // namespace qm
