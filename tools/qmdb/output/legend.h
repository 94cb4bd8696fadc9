#pragma once

#include "output/picture.h"

#include <cstddef>
#include <string>

namespace tool {

/// How the curves of a picture are told apart: nothing for a single one without a title, a list of titles
/// below it, or a scale of colours for a family whose list would take too much room.
struct Legend {
    enum class Kind { None, List, ColourScale };

    Kind kind = Kind::None;
    unsigned fontSize = 0;
    std::size_t columns = 1;
    std::size_t titleLength = 0; ///< longer titles are cut
    std::size_t shown = 0; ///< titles that find room, from the first on
};

/// The legend takes a quarter of the picture at most. `fontSize` in pixels is that of the picture's texts.
Legend legendFor(const Picture& picture, unsigned fontSize);

/// A title cut to a length, with "…" at its end.
std::string cutTitle(const std::string& title, std::size_t length);

} // namespace tool
