#pragma once

#include <string>
#include <vector>

namespace tool {

struct Curve {
    struct Dot {
        double x = 0;
        double y = 0;
    };

    std::string title;
    std::size_t dash = 0; ///< curves that lie upon each other stay visible when they are dashed differently
    std::vector<Dot> dots;
};

struct Picture {
    std::string title;
    std::string xLabel;
    std::string yLabel;
    bool family = false; ///< the curves are in an order, which their colours show
    std::vector<Curve> curves;
};

/// The commands that draw a picture for a file whose extension tells its kind, svg, png or pdf; without a
/// file for the terminal. Throws Failure for other extensions.
std::string gnuplotScript(const Picture& picture, const std::string& file);

} // namespace tool
