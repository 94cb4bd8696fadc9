#include "common/vocabulary.h"

#include "format/composition.h"
#include "format/vocabulary.h"

namespace tool::vocabulary {

constinit const std::string_view utf8Mark = format::utf8Mark;
constinit const std::string_view defaultTable = format::defaultTable;
constinit const std::string_view russianTable = format::russianTable;
constinit const std::string_view descriptionExtension = format::descriptionExtension;
constinit const std::string_view typeLetters = format::typeLetters;

bool isSumAllowed(double sum)
{
    return format::isSumAllowed(sum);
}

} // namespace tool::vocabulary
