#include "format/plainNumbers.h"

#include "qm/CQMTranscoder.h"

#include <cfenv>
#include <langinfo.h>

namespace format {

bool plainNumbersAllowed()
{
    const char* const point = nl_langinfo(RADIXCHAR);
    return point[0] == '.' && point[1] == '\0' && std::fegetround() == FE_TONEAREST
        && qm::CQMTranscoder::IsAnsiAscii();
}

} // namespace format
